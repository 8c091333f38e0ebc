// UpmixCompare: measures in the background, then sets the comparison of the listening setup.
#include "mix/player/upmix_compare.h"

#include <algorithm>

namespace brindlehum {

UpmixCompare::UpmixCompare(const PlaybackEngine& engine, ListeningSetup& listening, LoadedSound& sound,
                           Transport& transport, PlayerMessage& message, MainLoop& loop, Transport::OpenSource open)
    : engine_(engine),
      listening_(listening),
      sound_(sound),
      transport_(transport),
      message_(message),
      open_(std::move(open)),
      queue_(loop, "Brindlehum.match") {
    connect(&listening, &ListeningSetup::changed, this, &UpmixCompare::check);
    connect(&listening, &ListeningSetup::profileSelected, this, &UpmixCompare::check);
    for (const auto signal : {&LoadedSound::sourceChanged, &LoadedSound::replacing, &LoadedSound::fileReplaced}) {
        connect(&sound, signal, this, &UpmixCompare::end);
    }
}

std::optional<UpmixCompare::Subject> UpmixCompare::subject() const {
    auto snapshot = listening_.snapshot();
    if (!snapshot || !isPossible()) { return std::nullopt; }
    // What depends on the device that happens to be open doesn't change the loudness.
    snapshot->profile = listening_.profile();
    snapshot->deviceChannels = 0;
    snapshot->binauralMissing = false;
    snapshot->comparison.reset();
    return Subject{sound_.info()->url, *snapshot};
}

FrameRange UpmixCompare::part() const {
    if (transport_.selection()) { return *transport_.selection(); }
    const int64_t frames = sound_.info()->frames;
    const auto wanted = std::min(frames, int64_t(measuredSeconds * sound_.info()->sampleRate));
    const int64_t first = std::min(transport_.currentFrame(), frames - wanted);
    return {first, first + wanted};
}

void UpmixCompare::toggle() {
    const auto now = subject();
    if (!now) { return; }
    if (now != measured_) { return measure(*now); }
    if (isMeasuring()) { return end(); }
    const bool plain = !isPlain();
    listening_.setComparison(UpmixComparison{plain, plain ? gains_.plainDb : gains_.upmixDb});
}

void UpmixCompare::measure(const Subject& subject) {
    measured_ = subject;
    const auto work = [subject, part = part(), rate = engine_.sampleRate(),
                       open = open_](const Background::Task& task) {
        const auto stop = [task] { return task.isStopped(); };
        return upmixLevels(
            subject.heard, [&] { return open(subject.file, stop); }, part, rate, stop);
    };
    queue_.run(
        measuring_, work,
        [this](const UpmixLoudness& levels) {
            gains_ = matchedGains(levels, listening_.volumeDB());
            listening_.setComparison(UpmixComparison{true, gains_.plainDb});
        },
        [this](const std::exception& error) {
            end();
            message_.fail(error.what());
        });
    Q_EMIT changed();
}

void UpmixCompare::end() {
    measuring_.cancel();
    measured_.reset();
    listening_.setComparison(std::nullopt);
    Q_EMIT changed();
}

// Also after each of its own changes, which leave the subject as it is.
void UpmixCompare::check() {
    if (measured_ && subject() != measured_) { return end(); }
    Q_EMIT changed();
}

}  // namespace brindlehum
