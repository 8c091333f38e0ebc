// LinuxMediaSession: the player on the session bus, by MPRIS 2.2, the D-Bus interface of media players.
#pragma once

#include <memory>

#include "platform/media_session.h"

namespace brindlehum {

class MprisPlayer;

class LinuxMediaSession : public MediaSession {
public:
    LinuxMediaSession();
    ~LinuxMediaSession() override;
    void start(Wishes wishes) override;
    void show(const MediaStatus& status) override;
    void jumped() override;

private:
    std::unique_ptr<MprisPlayer> player_;  // none before the start, and without a bus
};

}  // namespace brindlehum
