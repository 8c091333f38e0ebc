// rmsTrack: RMS of overlapping windows of two hops, the fine time bases of the grid.
#pragma once

#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "dsp/signal.h"

namespace brindlehum {

// rms[i] is over x[i hop ..< i hop + 2 hop], for `count` windows that lie inside x. Each hop is squared only once.
inline std::vector<float> rmsTrack(std::span<const float> x, int64_t hop, int64_t count) {
    std::vector<float> track(size_t(count > 0 ? count : 0));
    const auto energyOf = [&](int64_t i) { return Signal::energy(x.subspan(size_t(i * hop), size_t(hop))); };
    double before = track.empty() ? 0 : energyOf(0);
    for (int64_t i = 0; i < count; ++i) {
        const double after = energyOf(i + 1);
        track[size_t(i)] = float(std::sqrt((before + after) / double(2 * hop)));
        before = after;
    }
    return track;
}

}  // namespace brindlehum
