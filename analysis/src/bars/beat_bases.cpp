#include "bars/beat_bases.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "bars/beat_path.h"
#include "bars/lattice_fit.h"

namespace brindlehum::bars {
namespace {

constexpr size_t most = 3;
constexpr double pathShift = 0.040;  // seconds from an envelope's peak to its attack, where no steady grid measures it

// True when two periods divide each other by a ratio whose hypotheses one base covers.
bool related(double a, double b) {
    constexpr std::array<double, 9> ratios = {1, 2, 3, 1.5, 4.0 / 3, 1 / 2.0, 1 / 3.0, 2 / 3.0, 3 / 4.0};
    return std::ranges::any_of(ratios, [&](double r) { return std::abs(a / b / r - 1) < 0.012; });
}

BeatBase layOut(const LatticeFit& fit, double shift, double duration) {
    BeatBase base{{}, fit.period, true, shift};
    const double at = fit.phase + shift;
    const double first = at - std::floor(at / fit.period) * fit.period;
    for (int64_t i = 0; first + double(i) * fit.period < duration; ++i) {
        base.beats.push_back(first + double(i) * fit.period);
    }
    return base;
}

std::optional<BeatBase> followed(std::span<const float> env, double bpm, double duration) {
    if (!(bpm >= 20 && bpm <= 400)) { return std::nullopt; }
    BeatBase base{beatPath(env, bpm), 0, false, pathShift};
    for (double& t : base.beats) { t += pathShift; }
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
        const double shift = GridBuilder::attackOffset(levels.attacks, fit.period, fit.phase, tempo.envFull);
        out.push_back(layOut(fit, shift, duration));
        if (out.back().beats.size() < 8) { out.pop_back(); }
        if (out.size() == most) { break; }
    }
    if (out.empty()) {
        if (auto base = followed(tempo.envFull, bpm.value_or(tempo.bpm), duration)) { out.push_back(std::move(*base)); }
    }
    return out;
}

}  // namespace brindlehum::bars
