// GridBuilder: uses an exact lattice for steady music, and the tracked beats for other music.
#include "analysis/grid/grid_builder.h"

#include <algorithm>
#include <cmath>

#include "analysis/grid/downbeat_detector.h"
#include "analysis/tempo/tempo_analyzer.h"
#include "dsp/signal.h"
#include "grid/rms_track.h"

namespace brindlehum::GridBuilder {
namespace {

double modulo(double x, double period) {
    const double rest = std::fmod(x, period);
    return rest < 0 ? rest + period : rest;
}

void laySteadyBeats(MusicGrid& grid, const Fit& fit, double shift) {
    grid.steady = true;
    grid.attackShift = shift;
    grid.bpm = 60 / fit.period;
    const double first = modulo(fit.phase + shift, fit.period);
    for (int64_t i = 0; first + double(i) * fit.period < grid.duration; ++i) {
        grid.beats.push_back(first + double(i) * fit.period);
    }
}

// Lays bars from the strongest beat position, back to the start of the file and forward to its end.
void laySteadyBars(MusicGrid& grid, int offset) {
    const double bar = 60 / grid.bpm * grid.beatsPerBar;
    double start = grid.beats[std::min(grid.beats.size() - 1, size_t(offset))];
    while (start - bar >= -0.06) { start -= bar; }
    for (int64_t i = 0; start + double(i) * bar < grid.duration - 0.001; ++i) {
        grid.downbeats.push_back(start + double(i) * bar);
    }
    if (!grid.downbeats.empty()) { grid.downbeats[0] = std::max(grid.downbeats[0], 0.0); }
}

}  // namespace

PulseLevels::PulseLevels(std::span<const float> mono22k) {
    std::vector<float> store;
    const std::span<const float> x = Signal::usable(mono22k, store);
    attacks = rmsTrack(x, attackHop);
    onsets = rmsTrack(x, onsetHop);
}

MusicGrid build(const TempoResult& tempo, std::span<const float> mono22k, double duration, std::optional<double> bpm,
                std::optional<int> beatsPerBar) {
    return build(tempo, PulseLevels(mono22k), duration, bpm, beatsPerBar);
}

MusicGrid build(const TempoResult& tempo, const PulseLevels& levels, double duration, std::optional<double> bpm,
                std::optional<int> beatsPerBar) {
    MusicGrid grid;
    grid.duration = duration;
    grid.beatsPerBar = std::max(beatsPerBar.value_or(tempo.meter.group == 3 && tempo.meter.contrast > 0.45 ? 3 : 4), 1);
    grid.bpm = bpm.value_or(tempo.bpm);
    const Fit fit = steadyFit(tempo.envFull, grid.bpm);
    const auto firstDownbeat = [&] {
        return downbeatOffset(grid.beats, tempo.envLow, tempo.envFull, grid.beatsPerBar);
    };
    if (fit.steady) {
        laySteadyBeats(grid, fit, attackOffset(levels.attacks, fit.period, fit.phase, tempo.envFull));
        if (!grid.beats.empty()) { laySteadyBars(grid, firstDownbeat()); }
    } else {
        grid.beats = bpm ? TempoAnalyzer::trackBeats(tempo.envFull, {}, *bpm).beats : tempo.beats;
        if (!grid.beats.empty()) {
            for (auto i = size_t(firstDownbeat()); i < grid.beats.size(); i += size_t(grid.beatsPerBar)) {
                grid.downbeats.push_back(grid.beats[i]);
            }
        }
    }
    if (grid.beats.empty()) {
        grid.downbeats = {0.0};
        grid.steady = false;
        grid.attackShift = 0;
        return grid;
    }
    const auto pulse =
        DownbeatDetector::detectLevels(levels.onsets, PulseLevels::onsetSeconds, grid.bpm, grid.beatsPerBar);
    grid.downbeatConfidence = pulse.confidence;
    grid.grooveStart = pulse.grooveStart;
    return grid;
}

int downbeatOffset(std::span<const double> beats, std::span<const float> low, std::span<const float> full, int group) {
    if (low.empty() || group < 1 || beats.size() < 2 * size_t(group)) { return 0; }
    const std::vector<double> strength = TempoAnalyzer::accents(beats, low, full);
    int best = 0;
    double bestMean = -1;
    for (int offset = 0; offset < group; ++offset) {
        double sum = 0;
        int count = 0;
        for (auto i = size_t(offset); i < strength.size(); i += size_t(group), ++count) { sum += strength[i]; }
        if (count > 0 && sum / count > bestMean) {
            bestMean = sum / count;
            best = offset;
        }
    }
    return best;
}

}  // namespace brindlehum::GridBuilder
