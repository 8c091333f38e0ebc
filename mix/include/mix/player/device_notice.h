// DeviceNotice: says that the sound goes to another device than before.
#pragma once

#include <optional>
#include <string>

#include "mix/engine/playback_engine.h"
#include "mix/player/player_message.h"

namespace brindlehum {

// Main thread. Both must outlive it.
class DeviceNotice {
public:
    DeviceNotice(const PlaybackEngine& engine, PlayerMessage& message) : engine_(engine), message_(message) {}

    // Takes back what it said last, which is no longer true.
    void withdraw();
    // After a change from `before`. Nothing while it is the same device, another message stands, or the sound server is
    // away: a banner says so then.
    void tell(const AudioOutputDevice& before);

private:
    const PlaybackEngine& engine_;
    PlayerMessage& message_;
    std::optional<std::string> said_;
};

}  // namespace brindlehum
