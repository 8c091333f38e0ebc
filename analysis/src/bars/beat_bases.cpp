#include "bars/beat_bases.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "bars/attack_shift.h"
#include "bars/beat_path.h"
#include "bars/lattice_fit.h"

namespace brindlehum::bars {
namespace {

constexpr size_t most = 3;

// True when two periods divide each other by a ratio whose hypotheses one base covers.
bool related(double a, double b) {
    constexpr std::array<double, 9> ratios = {1, 2, 3, 1.5, 4.0 / 3, 1 / 2.0, 1 / 3.0, 2 / 3.0, 3 / 4.0};
    return std::ranges::any_of(ratios, [&](double r) { return std::abs(a / b / r - 1) < 0.012; });
}

// The beats of a line from `start`, before the end.
std::vector<double> lattice(double start, double period, double end) {
    const double first = start - std::floor(start / period) * period;
    std::vector<double> beats;
    for (int64_t i = 0; first + double(i) * period < end; ++i) { beats.push_back(first + double(i) * period); }
    return beats;
}

BeatBase layOut(const LatticeFit& fit, std::span<const float> env, std::span<const float> levels, double duration) {
    const double shift = attackShift(levels, lattice(fit.phase, fit.period, duration), env);
    return {lattice(fit.phase + shift, fit.period, duration), fit.period, true, shift};
}

std::optional<BeatBase> followed(std::span<const float> env, std::span<const float> levels, double bpm,
                                 double duration) {
    if (!(bpm >= 20 && bpm <= 400)) { return std::nullopt; }
    BeatBase base{beatPath(env, bpm)};
    base.attackShift = attackShift(levels, base.beats, env);
    for (double& t : base.beats) { t += base.attackShift; }
    std::erase_if(base.beats, [&](double t) { return t >= duration; });
    if (base.beats.size() < 8) { return std::nullopt; }
    std::vector<double> intervals;
    for (size_t i = 1; i < base.beats.size(); ++i) { intervals.push_back(base.beats[i] - base.beats[i - 1]); }
    std::ranges::nth_element(intervals, intervals.begin() + std::ptrdiff_t(intervals.size() / 2));
    base.period = intervals[intervals.size() / 2];
    return base;
}

}  // namespace

std::vector<BeatBase> beatBases(const TempoResult& tempo, const GridBuilder::PulseLevels& levels, double duration,
                                std::optional<double> bpm) {
    std::vector<TempoResult::Candidate> candidates = tempo.candidates;
    if (bpm) { candidates = {{*bpm, 1, 1}}; }
    if (candidates.size() > 8) { candidates.resize(8); }
    const std::vector<Peak> onsets = peaks(tempo.envFull);
    std::vector<BeatBase> out;
    for (const auto& candidate : candidates) {
        const bool plausible =
            candidate.bpm >= 44 && candidate.bpm <= 215 && candidate.ranked >= 0.4 * candidates[0].ranked;
        const auto known = [&](const BeatBase& base) { return related(base.period, 60 / candidate.bpm); };
        if ((!plausible && !bpm) || std::ranges::any_of(out, known)) { continue; }
        const LatticeFit fit = fitLattice(tempo.envFull, onsets, candidate.bpm);
        // The first candidate is likely anyway; the others must convince.
        const double enough = &candidate == candidates.data() ? 0.85 : 0.95;
        if (!fit.strong || fit.agreement < enough) { continue; }
        out.push_back(layOut(fit, tempo.envFull, levels.attacks, duration));
        if (out.back().beats.size() < 8) { out.pop_back(); }
        if (out.size() == most) { break; }
    }
    if (out.empty()) {
        auto base = followed(tempo.envFull, levels.attacks, bpm.value_or(tempo.bpm), duration);
        if (base) { out.push_back(std::move(*base)); }
    }
    return out;
}

}  // namespace brindlehum::bars
