// Steady fit: searches the best comb over tempo and phase, then compares it with each quarter of the file.
#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/grid/grid_builder.h"
#include "analysis/tempo/onset_time.h"

namespace brindlehum::GridBuilder {
namespace {

constexpr int phases = 96;  // trial phases per period

// The largest of each entry and its neighbours, so that a comb that is one frame off still counts.
std::vector<float> dilate(std::span<const float> env) {
    std::vector<float> out(env.size());
    for (size_t i = 0; i < env.size(); ++i) {
        out[i] = std::max({env[i > 0 ? i - 1 : 0], env[i], env[std::min(i + 1, env.size() - 1)]});
    }
    return out;
}

// Mean of the dilated envelope at the frames nearest to start + k period in [from, to).
double comb(std::span<const float> dilated, double period, double start, int64_t from, int64_t to) {
    const double first = start * OnsetTime::frameRate;
    const double step = period * OnsetTime::frameRate;
    double sum = 0;
    int64_t count = 0;
    // Starts one tooth early, and the loop skips that one; no later tooth can fall before the range.
    for (auto k = int64_t(std::max(std::floor((double(from) - first) / step) - 1, 0.0));; ++k) {
        const auto i = int64_t(std::floor(first + double(k) * step + 0.5));
        if (i >= to) { break; }
        if (i < from) { continue; }
        sum += dilated[size_t(i)];
        ++count;
    }
    return count > 0 ? sum / double(count) : 0;
}

struct Best {
    double period = 0;
    double phase = 0;
    double score = -1;
};

Best bestPhase(std::span<const float> dilated, double period, int64_t from, int64_t to) {
    Best best{period};
    for (int j = 0; j < phases; ++j) {
        const double phase = period * j / phases;
        const double score = comb(dilated, period, phase, from, to);
        if (score > best.score) { best = {period, phase, score}; }
    }
    return best;
}

// The best comb of the whole file within 0.6 % of `beat` seconds; its phase is then refined in tenths of a trial step.
Best bestComb(std::span<const float> dilated, double beat) {
    const auto n = int64_t(dilated.size());
    Best best;
    for (int k = -30; k <= 30; ++k) {
        const Best trial = bestPhase(dilated, beat * (1 + 0.0002 * k), 0, n);
        if (trial.score > best.score) { best = trial; }
    }
    const double step = best.period / phases;
    for (int m = -10; m <= 10; ++m) {
        const double phase = best.phase + step * m / 10;
        const double score = comb(dilated, best.period, phase, 0, n);
        if (score > best.score) { best = {best.period, phase, score}; }
    }
    return best;
}

// True when a quarter's own best phase is far from the whole file's; never for a quiet quarter.
bool disagrees(std::span<const float> dilated, const Best& whole, int64_t from, int64_t to) {
    const Best part = bestPhase(dilated, whole.period, from, to);
    if (part.score < 0.05) { return false; }
    double distance = std::fmod(std::abs(part.phase - whole.phase), whole.period);
    distance = std::min(distance, whole.period - distance);
    return distance > 0.07 * whole.period;
}

}  // namespace

Fit steadyFit(std::span<const float> env, double bpm) {
    Fit fit{false, 60 / bpm, 0, -1};
    // Nothing under 8 s counts as steady. A beat shorter than a frame, or longer than any file, has no comb.
    if (env.size() < 690 || !(fit.period * OnsetTime::frameRate >= 1) || fit.period > 1e6) { return fit; }
    const std::vector<float> dilated = dilate(env);
    const Best best = bestComb(dilated, fit.period);
    double sum = 0;
    for (const float value : env) { sum += value; }
    fit = {1.5 * sum / double(env.size()) < best.score, best.period, best.phase, best.score};
    const auto quarter = int64_t(env.size() / 4);
    for (int q = 0; q < 4 && fit.steady; ++q) {
        fit.steady = !disagrees(dilated, best, q * quarter, (q + 1) * quarter);
    }
    return fit;
}

}  // namespace brindlehum::GridBuilder
