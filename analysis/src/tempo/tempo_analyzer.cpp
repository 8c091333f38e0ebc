// TempoAnalyzer: finds one tempo, its alternatives, its drift and its beats from the working signal.
#include "analysis/tempo/tempo_analyzer.h"

#include <algorithm>
#include <cmath>

#include "dsp/signal.h"

namespace brindlehum::TempoAnalyzer {
namespace {

struct Relation {
    double factor;
    const char* label;
};
constexpr Relation relations[] = {
    {0.5, "÷2 half-time"},           {2, "×2 double-time"},           {3.0 / 2, "×3/2 triplet pulse"},
    {2.0 / 3, "×2/3 triplet pulse"}, {4.0 / 3, "×4/3 dotted groove"}, {3.0 / 4, "×3/4 dotted groove"},
};

std::vector<TempoResult::Alternative> alternatives(double bpm, std::span<const TempoResult::Candidate> candidates) {
    std::vector<TempoResult::Alternative> out;
    for (const Relation& relation : relations) {
        const double alt = bpm * relation.factor;
        if (alt < slowest || alt > fastest) { continue; }
        const auto distance = [alt](const TempoResult::Candidate& c) { return std::abs(c.bpm - alt); };
        const auto& nearest = *std::ranges::min_element(candidates, {}, distance);
        out.push_back(
            {std::round(alt * 100) / 100, relation.label, distance(nearest) / alt < 0.03 ? nearest.score : 0});
    }
    return out;
}

// (largest - smallest) / median of the tempi.
double spread(std::vector<double> tempi) {
    std::ranges::sort(tempi);
    return (tempi.back() - tempi.front()) / tempi[tempi.size() / 2];
}

// Speech and noise of 2 to 70 s stay below 0.36 / sqrt(seconds); accompaniments score 0.38 and more from 10 s on.
constexpr double chanceScore = 0.42;  // of a second
constexpr double leastScore = 0.06;   // of any length
constexpr size_t fewestBeats = 4;     // three equal intervals

const char* driftName(double spread) {
    if (spread < 0.015) { return "STEADY"; }
    return spread < 0.04 ? "BREATHING" : "RUBATO";
}

}  // namespace

bool hasPulse(const TempoResult& tempo) {
    // Digital silence has no onset at all.
    const bool sounds = std::ranges::any_of(tempo.envFull, [](float onset) { return onset > 0; });
    const double chance = chanceScore / std::sqrt(std::max(tempo.durationSec, 1e-9));
    return sounds && tempo.beats.size() >= fewestBeats && tempo.score > std::max(chance, leastScore);
}

std::optional<TempoResult> analyze(std::span<const float> mono22k, std::optional<double> hint,
                                   std::optional<std::pair<double, double>> range) {
    return analyze(envelopes(mono22k), double(mono22k.size()) / Signal::analysisRate, hint, range);
}

std::optional<TempoResult> analyze(Envelopes env, double durationSec, std::optional<double> hint,
                                   std::optional<std::pair<double, double>> range) {
    if (hint && !(*hint > 0)) { return std::nullopt; }
    if (env.full.empty()) { return std::nullopt; }
    auto [lo, hi] = range.value_or(std::pair{slowest, fastest});
    if (hint) {
        lo = std::max(lo, *hint / 1.35);
        hi = std::min(hi, *hint * 1.35);
    }
    TempoResult out;
    out.candidates = candidates(env.full, lo, hi, hint);
    if (out.candidates.empty()) { return std::nullopt; }
    const auto& best = out.candidates[0];
    out.durationSec = durationSec;
    out.bpm = best.bpm;
    out.score = best.score;
    out.alternatives = alternatives(best.bpm, out.candidates);
    if (out.candidates.size() > 1 && best.ranked * 0.92 <= out.candidates[1].ranked) {
        out.twin = out.candidates[1].bpm;
    }

    const std::vector<MapScore> map = tempoMap(env.full, best.bpm, 8, 2);
    std::vector<double> tempi;
    for (const MapScore& point : map) {
        out.tempoMap.push_back({point.t, point.bpm});
        tempi.push_back(point.bpm);
    }
    if (tempi.empty()) { tempi.push_back(best.bpm); }
    const double drift = spread(std::move(tempi));
    out.drift = driftName(drift);
    out.driftSpreadPct = drift * 100;

    Tracked tracked = trackBeats(env.full, map, best.bpm);
    out.snappedPct = tracked.snapped * 100;
    out.meter = meter(tracked.beats, env.low, env.full);
    out.beats = std::move(tracked.beats);
    if (!out.beats.empty()) {
        out.firstDownbeat = out.beats[std::min(out.beats.size() - 1, size_t(out.meter.downbeatOffset))];
    }
    out.envFull = std::move(env.full);
    out.envLow = std::move(env.low);
    return out;
}

}  // namespace brindlehum::TempoAnalyzer
