// UpmixCompare: switches between the upmix and the plain fold-down at equal loudness.
#pragma once

#include <QObject>
#include <optional>

#include "mix/player/listening_setup.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/transport.h"
#include "mix/player/upmix_match.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread. The first switch measures both over the selection, or over some seconds from the playhead, and then
// plays the fold-down; each further one is heard at once. A change of the sound, the profile or the upmix ends the
// comparison, and all is as loud as usual.
class UpmixCompare : public QObject {
    Q_OBJECT
public:
    static constexpr double measuredSeconds = 20;

    UpmixCompare(const PlaybackEngine& engine, ListeningSetup& listening, LoadedSound& sound, Transport& transport,
                 PlayerMessage& message, MainLoop& loop, Transport::OpenSource open);

    bool isPossible() const { return listening_.upmixState() == UpmixState::on; }
    bool isMeasuring() const { return measuring_.isBusy(); }
    bool isPlain() const { return listening_.comparison() && listening_.comparison()->plain; }
    void toggle();
    void end();

    Background& queue() { return queue_; }  // on which the levels are measured; tests drain it

Q_SIGNALS:
    void changed();

private:
    struct Subject {
        std::filesystem::path file;
        ListeningSnapshot heard;  // as far as the loudness depends on it
        bool operator==(const Subject&) const = default;
    };
    std::optional<Subject> subject() const;
    FrameRange part() const;
    void measure(const Subject& subject);
    void check();

    const PlaybackEngine& engine_;
    ListeningSetup& listening_;
    LoadedSound& sound_;
    Transport& transport_;
    PlayerMessage& message_;
    Transport::OpenSource open_;
    std::optional<Subject> measured_;  // what the gains belong to, or will
    MatchedGains gains_;
    Background::Line measuring_;
    Background queue_;  // the last member, so that its thread ends first
};

}  // namespace brindlehum
