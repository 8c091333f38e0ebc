// The editor's mix: silences lanes in the matrix and adds the metronome's column.
#include "editor/playback/editor_mix.h"

namespace brindlehum {
namespace {

float& gainOf(MixConfig& config, int row, int in) {
    return config.matrix[size_t(row) * size_t(config.inChannels) + size_t(in)];
}

// The gains of a mono sound on the same rows; on the first two rows where a mono sound has others.
std::vector<float> clickGains(ListeningSnapshot snapshot, const MixConfig& document) {
    snapshot.source = SourceFormat::speakers({SpeakerID::C});
    snapshot.channels = 1;
    const MixConfig mono = listeningMix(snapshot).config;
    if (mono.rows == document.rows && mono.virtualDirections == document.virtualDirections) { return mono.matrix; }
    std::vector<float> gains(size_t(document.rows), 0.0F);
    for (size_t row = 0; row < std::min<size_t>(gains.size(), 2); ++row) { gains[row] = 0.7F; }
    return gains;
}

}  // namespace

ListeningMix editorMix(const ListeningSnapshot& given, const LaneSwitches& lanes, bool metronome) {
    ListeningSnapshot snapshot = given;
    snapshot.upmix = {};
    snapshot.listen = ListenMode::normal;
    snapshot.rotation = {};
    ListeningMix mix = listeningMix(snapshot);
    MixConfig& config = mix.config;
    for (int in = 0; in < config.inChannels; ++in) {
        if (lanes.isHeard(in)) { continue; }
        for (int row = 0; row < config.rows; ++row) { gainOf(config, row, in) = 0; }
    }
    if (!metronome) { return mix; }
    const std::vector<float> click = clickGains(snapshot, config);
    MixConfig with = config;
    with.inChannels = config.inChannels + 1;
    with.matrix.assign(size_t(with.rows) * size_t(with.inChannels), 0.0F);
    for (int row = 0; row < config.rows; ++row) {
        for (int in = 0; in < config.inChannels; ++in) { gainOf(with, row, in) = gainOf(config, row, in); }
        gainOf(with, row, config.inChannels) = click[size_t(row)];
    }
    config = std::move(with);
    return mix;
}

}  // namespace brindlehum
