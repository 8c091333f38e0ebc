// UpmixLevels: follows the room, the transport and the processor of the moment.
#include "mix/player/upmix_levels.h"

#include <algorithm>

namespace brindlehum {
namespace {

constexpr double tickSeconds = 1.0 / 30;

SpeakerList roomOf(const ListeningSetup& listening) {
    if (auto room = listening.upmixRoom()) { return *room; }
    const bool headphones = listening.profile().kind == OutputProfile::Kind::headphones;
    return speakers(headphones ? LayoutID::l714 : listening.profile().layout);
}

}  // namespace

UpmixLevels::UpmixLevels(const PlaybackEngine& engine, const ListeningSetup& listening, Transport& transport,
                         MainLoop& loop)
    : engine_(engine), listening_(listening), transport_(transport), loop_(loop) {
    connect(&transport, &Transport::changed, this, &UpmixLevels::refresh);
    connect(&listening, &ListeningSetup::changed, this, &UpmixLevels::refresh);
    connect(&listening, &ListeningSetup::profileSelected, this, &UpmixLevels::refresh);
}

void UpmixLevels::show(bool shown) {
    isShown_ = shown;
    if (shown) { return refresh(); }
    timer_.reset();
    if (const Upmixer* upmixer = engine_.upmixer()) { mn_upmix_measure(upmixer->raw(), 0); }
}

void UpmixLevels::refresh() {
    if (!isShown_) { return; }
    const SpeakerList room = roomOf(listening_);
    if (!std::ranges::equal(room, speakers_, {}, {}, &Speaker::id)) {
        speakers_.clear();
        for (const SpeakerID id : room) { speakers_.push_back({id, label(id, room), direction(id, room), {}, {}}); }
        Q_EMIT changed();
    }
    if (timer_ || !transport_.isPlaying()) { return; }
    last_ = loop_.now();
    timer_ = loop_.every(tickSeconds, [this] { tick(); });
}

void UpmixLevels::tick() {
    const double now = loop_.now();
    const double seconds = now - std::exchange(last_, now);
    const Upmixer* const upmixer = transport_.isPlaying() ? engine_.upmixer() : nullptr;
    mn_upmix* const raw = upmixer && upmixer->outChannels() == int(speakers_.size()) ? upmixer->raw() : nullptr;
    if (raw) { mn_upmix_measure(raw, 1); }
    bool atRest = true;
    for (size_t i = 0; i < speakers_.size(); ++i) {
        Speaker& speaker = speakers_[i];
        speaker.direct = metered(speaker.direct, raw ? mn_upmix_take_direct(raw, int32_t(i)) : 0, seconds);
        speaker.ambience = metered(speaker.ambience, raw ? mn_upmix_take_ambience(raw, int32_t(i)) : 0, seconds);
        atRest = atRest && speaker.direct.isAtRest() && speaker.ambience.isAtRest();
    }
    if (atRest && !transport_.isPlaying()) { timer_.reset(); }
    Q_EMIT changed();
}

}  // namespace brindlehum
