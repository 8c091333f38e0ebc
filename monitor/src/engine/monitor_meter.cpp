#include "monitor/engine/monitor_meter.h"

#include <algorithm>
#include <utility>

#include "monitor/state/monitor_matrix.h"

namespace brindlehum {
namespace {

constexpr double tickSeconds = 1.0 / 30;

// Keeps the levels of a list that stays the same.
void follow(std::vector<MonitorMeter::Channel>& channels, const SpeakerList& list) {
    if (std::ranges::equal(channels, list, {}, &MonitorMeter::Channel::speaker)) { return; }
    channels.clear();
    for (const SpeakerID speaker : list) { channels.push_back({speaker, label(speaker, list), {}}); }
}

void meter(std::vector<MonitorMeter::Channel>& channels, const std::vector<float>& peaks, double seconds) {
    for (size_t i = 0; i < channels.size(); ++i) {
        channels[i].level = metered(channels[i].level, i < peaks.size() ? peaks[i] : 0, seconds);
    }
}

}  // namespace

MonitorMeter::MonitorMeter(MonitorEngine& monitor, MainLoop& loop) : monitor_(monitor), loop_(loop) {
    connect(&monitor, &MonitorEngine::changed, this, &MonitorMeter::refresh);
    refresh();
}

void MonitorMeter::refresh() {
    const OutputProfile& profile = monitor_.profile();
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    follow(bus_, channels(monitor_.state().source));
    follow(speakers_, brindlehum::speakers(headphones ? LayoutID::stereo : profile.layout));
    Q_EMIT changed();
}

void MonitorMeter::show(bool shown) {
    if (!shown) { return timer_.reset(); }
    if (timer_) { return; }
    (void)monitor_.takeBusPeaks();  // of what sounded long ago
    (void)monitor_.takeSpeakerPeaks();
    last_ = loop_.now();
    timer_ = loop_.every(tickSeconds, [this] { tick(); });
}

void MonitorMeter::tick() {
    const double now = loop_.now();
    const double seconds = now - std::exchange(last_, now);
    const auto atRest = [](const auto& list) {
        return std::ranges::all_of(list, [](const Channel& each) { return each.level.isAtRest(); });
    };
    if (!monitor_.running() && atRest(bus_) && atRest(speakers_)) { return; }
    meter(bus_, monitor_.takeBusPeaks(), seconds);
    meter(speakers_, monitor_.takeSpeakerPeaks(), seconds);
    Q_EMIT changed();
}

void MonitorMeter::clearOver() {
    for (auto* list : {&bus_, &speakers_}) {
        for (Channel& each : *list) { each.level.isOver = false; }
    }
    Q_EMIT changed();
}

}  // namespace brindlehum
