// Attack offset: refines the envelope's frames of 11.6 ms to the actual attacks, on a track of 1 ms.
#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/grid/grid_builder.h"
#include "analysis/tempo/onset_time.h"
#include "dsp/signal.h"

namespace brindlehum::GridBuilder {
namespace {

constexpr double frameSeconds = PulseLevels::attackHop / Signal::analysisRate;

// Seconds from `beat` to the steepest rise within about 40 ms before and 100 ms after it.
std::optional<double> attackNear(std::span<const float> track, double beat) {
    const auto centre = int64_t(beat / frameSeconds);
    const int64_t from = std::max<int64_t>(centre - 40, 1);
    const int64_t to = std::min<int64_t>(centre + 100, int64_t(track.size()) - 1);
    float steepest = 0;
    int64_t at = 0;
    for (int64_t i = from; i <= to; ++i) {
        const float rise = track[size_t(i)] - track[size_t(i - 1)];
        if (rise > steepest) {
            steepest = rise;
            at = i;
        }
    }
    if (!(steepest > 0)) { return std::nullopt; }
    return double(at) * frameSeconds - beat;
}

}  // namespace

double attackOffset(std::span<const float> levels, double period, double phase, std::span<const float> env) {
    if (levels.size() < 11 || !(period > 0)) { return 0; }
    const double end = double(levels.size()) * frameSeconds;
    const double first = phase - std::floor(phase / period) * period;
    std::vector<double> offsets;
    for (int64_t k = 0;; ++k) {
        const double beat = first + double(k) * period;
        if (!(beat < end)) { break; }
        const auto i = std::llround(beat * OnsetTime::frameRate);
        if (i >= int64_t(env.size())) { break; }
        if (!(env[size_t(i)] > 0.25F)) { continue; }
        if (const auto offset = attackNear(levels, beat)) { offsets.push_back(*offset); }
    }
    if (offsets.size() < 8) { return 0; }
    std::ranges::sort(offsets);
    return std::clamp(offsets[offsets.size() / 2] - 0.003, -0.04, 0.1);
}

}  // namespace brindlehum::GridBuilder
