// Attack shift: averages the level around all beats, since the ripple of single notes is as steep as their attacks, and
// takes the foot of the steepest rise.
#include "bars/attack_shift.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "analysis/grid/grid_builder.h"
#include "analysis/tempo/onset_time.h"

namespace brindlehum::bars {
namespace {

constexpr double tick = GridBuilder::PulseLevels::attackHop / Signal::analysisRate;  // seconds, 1 ms
constexpr int before = 40;  // ticks that the profile starts before a beat
constexpr int after = 120;
constexpr double foot = 0.3;  // share of the rise that has passed where a note is heard to begin
// Nothing makes a peak before the window of the onset envelope reaches it.
constexpr double latest = OnsetTime::frameSize / Signal::analysisRate;
using Profile = std::array<double, before + after>;

// The mean level around the beats, each beat's own scaled to the same height, and weighted by its onset. False with
// fewer than 8 beats.
bool averageLevels(std::span<const float> levels, std::span<const double> beats, std::span<const float> env,
                   Profile& out) {
    out.fill(0);
    int count = 0;
    for (const double beat : beats) {
        const auto frame = std::llround(beat * OnsetTime::frameRate);
        const auto first = std::llround(beat / tick) - before;
        if (frame < 0 || frame >= int64_t(env.size()) || !(env[size_t(frame)] > 0.02F)) { continue; }
        if (first < 0 || first + int64_t(out.size()) > int64_t(levels.size())) { continue; }
        const auto around = levels.subspan(size_t(first), out.size());
        const float highest = *std::ranges::max_element(around);
        if (!(highest > 0)) { continue; }
        const double weight = double(env[size_t(frame)]) / double(highest);
        for (size_t i = 0; i < out.size(); ++i) { out[i] += weight * double(around[i]); }
        ++count;
    }
    return count >= 8;
}

// Means of five ticks.
Profile smooth(const Profile& x) {
    Profile out{};
    const auto n = int(x.size());
    for (int i = 0; i < n; ++i) {
        for (int k = -2; k <= 2; ++k) { out[size_t(i)] += x[size_t(std::clamp(i + k, 0, n - 1))] / 5; }
    }
    return out;
}

}  // namespace

double attackShift(std::span<const float> levels, std::span<const double> beats, std::span<const float> env) {
    Profile raw;
    if (!averageLevels(levels, beats, env, raw)) { return usualAttackShift; }
    const Profile profile = smooth(raw);
    constexpr int reach = 5;  // ticks to either side
    int steepest = before;
    double rise = 0;
    for (int i = before; i < before + 90; ++i) {
        const double here = profile[size_t(i + reach)] - profile[size_t(i - reach)];
        if (here > rise) {
            rise = here;
            steepest = i;
        }
    }
    if (!(rise > 0)) { return usualAttackShift; }
    const auto at = profile.begin() + steepest;
    const double top = *std::max_element(at, at + 25);
    const double base = *std::min_element(at - before, at);
    const double level = base + foot * (top - base);
    // The unsmoothed profile, so that the attack of a click stays where it is.
    int i = steepest + reach;
    while (i > 0 && raw[size_t(i - 1)] >= level) { --i; }
    return std::min((i + 1 - before) * tick, latest);
}

}  // namespace brindlehum::bars
