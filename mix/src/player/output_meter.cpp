// OutputMeter: follows the profile and the transport.
#include "mix/player/output_meter.h"

#include <algorithm>

#include "mix/config/speaker_map.h"

namespace brindlehum {
namespace {

constexpr double tickSeconds = 1.0 / 30;

bool isSame(const OutputMeter::Output& a, const OutputMeter::Output& b) {
    return a.label == b.label && a.channel == b.channel;
}

}  // namespace

std::vector<OutputMeter::Output> meteredOutputs(const OutputProfile& profile,
                                                const std::vector<std::string>& positions) {
    if (profile.kind == OutputProfile::Kind::headphones) {
        return {{"L", profile.headphoneLeft, {}}, {"R", profile.headphoneRight, {}}};
    }
    const SpeakerList& list = speakers(profile.layout);
    const std::vector<int> channels = SpeakerMap::outputs(profile, positions);
    std::vector<OutputMeter::Output> outputs;
    for (size_t i = 0; i < list.size() && i < channels.size(); ++i) {
        if (channels[i] >= 0) { outputs.push_back({label(list[i], list), channels[i], {}}); }
    }
    return outputs;
}

OutputMeter::OutputMeter(const PlaybackEngine& engine, const SettingsStore& settings, MainLoop& loop,
                         Transport& transport)
    : engine_(engine), settings_(settings), loop_(loop), transport_(transport) {
    connect(&transport, &Transport::changed, this, &OutputMeter::refresh);
    connect(&settings, &SettingsStore::changed, this, &OutputMeter::refresh);
    refresh();
}

void OutputMeter::refresh() {
    std::vector<Output> now = meteredOutputs(settings_.activeProfile(), engine_.device().positions);
    if (!std::ranges::equal(now, outputs_, isSame)) {
        outputs_ = std::move(now);
        Q_EMIT changed();
    }
    if (timer_ || !transport_.isPlaying()) { return; }
    for (const Output& output : outputs_) { engine_.ctx().takePeak(output.channel); }  // of what sounded long ago
    last_ = loop_.now();
    timer_ = loop_.every(tickSeconds, [this] { tick(); });
}

void OutputMeter::tick() {
    const double now = loop_.now();
    const double seconds = now - std::exchange(last_, now);
    for (Output& output : outputs_) {
        output.level = metered(output.level, engine_.ctx().takePeak(output.channel), seconds);
    }
    const bool atRest = std::ranges::all_of(outputs_, [](const Output& o) { return o.level.isAtRest(); });
    if (atRest && !transport_.isPlaying()) { timer_.reset(); }
    Q_EMIT changed();
}

void OutputMeter::clearOver() {
    for (Output& output : outputs_) { output.level.isOver = false; }
    Q_EMIT changed();
}

}  // namespace brindlehum
