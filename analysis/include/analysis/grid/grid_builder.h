// GridBuilder: computes bars and beats from a tempo analysis. Stateless, any thread.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "analysis/grid/music_grid.h"
#include "analysis/tempo/tempo_result.h"
#include "dsp/signal.h"

namespace brindlehum::GridBuilder {

// The level of the working signal over time, as RMS of windows of two hops.
struct PulseLevels {
    static constexpr int attackHop = 22;  // samples, 1 ms
    static constexpr int onsetHop = 110;  // 5 ms
    static constexpr double onsetSeconds = onsetHop / Signal::analysisRate;
    std::vector<float> attacks;  // one entry per attackHop
    std::vector<float> onsets;   // one entry per onsetHop

    PulseLevels() = default;
    explicit PulseLevels(std::span<const float> mono22k);
};

// `bpm` (above 0) and `beatsPerBar` (1 or more) override the analysis. Without any beat the grid has the
// single downbeat 0. `duration` in seconds.
MusicGrid build(const TempoResult& tempo, const PulseLevels& levels, double duration,
                std::optional<double> bpm = std::nullopt, std::optional<int> beatsPerBar = std::nullopt);
MusicGrid build(const TempoResult& tempo, std::span<const float> mono22k, double duration,
                std::optional<double> bpm = std::nullopt, std::optional<int> beatsPerBar = std::nullopt);

struct Fit {
    bool steady = false;
    double period = 0;  // seconds per beat
    double phase = 0;   // seconds
    double score = -1;  // mean of the envelope on the lattice
};
// The lattice within 0.6 % of `bpm` that collects the most of the envelope, and whether the whole file follows it.
Fit steadyFit(std::span<const float> env, double bpm);

// Seconds from the lattice to the actual attacks, -0.04 to 0.1; 0 with fewer than 8 strong beats. `levels` are those of
// PulseLevels::attacks.
double attackOffset(std::span<const float> levels, double period, double phase, std::span<const float> env);

// Index of the first downbeat, less than `group`: the bar position with the strongest beats, low frequencies first.
int downbeatOffset(std::span<const double> beats, std::span<const float> low, std::span<const float> full, int group);

}  // namespace brindlehum::GridBuilder
