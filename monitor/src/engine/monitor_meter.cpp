#include "monitor/engine/monitor_meter.h"

#include <algorithm>
#include <cmath>
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

void count(MonitorMeter::Channel& channel, float peak) {
    const bool isNumber = std::isfinite(peak);
    if (!isNumber || peak > 1) { ++channel.overs; }
    if (isNumber && peak > 0) { channel.highest = std::max(channel.highest, 20 * std::log10(double(peak))); }
    channel.level.isOver = channel.overs > 0;
}

// Whether anything of it is seen.
bool meter(std::vector<MonitorMeter::Channel>& channels, const std::vector<float>& peaks, double seconds) {
    bool differs = false;
    for (size_t i = 0; i < channels.size(); ++i) {
        MonitorMeter::Channel& channel = channels[i];
        const float peak = i < peaks.size() ? peaks[i] : 0;
        const MonitorMeter::Channel before = channel;
        channel.level = metered(channel.level, peak, seconds);
        count(channel, peak);
        differs = differs || channel.level.level != before.level.level || channel.level.hold != before.level.hold ||
                  channel.overs != before.overs;
    }
    return differs;
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
    figures_ = {monitor_.latency(), monitor_.dropouts()};
    if (shown_ && monitor_.running() && !timer_) {
        last_ = loop_.now();
        timer_ = loop_.every(tickSeconds, [this] { tick(); });
    }
    Q_EMIT changed();
}

void MonitorMeter::show(bool shown) {
    if (shown == shown_) { return; }
    shown_ = shown;
    if (!shown) { return timer_.reset(); }
    takeWhatWasHidden();
    refresh();
}

// The overs count, but the levels are of what sounded long ago.
void MonitorMeter::takeWhatWasHidden() {
    const auto take = [](std::vector<Channel>& channels, const std::vector<float>& peaks) {
        for (size_t i = 0; i < std::min(channels.size(), peaks.size()); ++i) { count(channels[i], peaks[i]); }
    };
    take(bus_, monitor_.takeBusPeaks());
    take(speakers_, monitor_.takeSpeakerPeaks());
}

void MonitorMeter::tick() {
    const double now = loop_.now();
    const double seconds = now - std::exchange(last_, now);
    const bool busDiffers = meter(bus_, monitor_.takeBusPeaks(), seconds);
    const bool roomDiffers = meter(speakers_, monitor_.takeSpeakerPeaks(), seconds);
    const Figures before = std::exchange(figures_, {monitor_.latency(), monitor_.dropouts()});
    const auto atRest = [](const auto& list) {
        return std::ranges::all_of(list, [](const Channel& each) { return each.level.isAtRest(); });
    };
    if (!monitor_.running() && atRest(bus_) && atRest(speakers_)) { timer_.reset(); }
    if (busDiffers || roomDiffers || figures_ != before) { Q_EMIT changed(); }
}

void MonitorMeter::clearOver() {
    for (auto* list : {&bus_, &speakers_}) {
        for (Channel& each : *list) {
            each.overs = 0;
            each.highest = MeterLevel::floor;
            each.level.isOver = false;
        }
    }
    Q_EMIT changed();
}

}  // namespace brindlehum
