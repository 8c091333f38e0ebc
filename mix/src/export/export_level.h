// ExportLevel: how loud an exported file is, and how much of it was beyond full scale.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

namespace brindlehum {

struct ExportLevel {
    double peak = 0;      // largest magnitude, without samples that are no numbers
    int64_t clipped = 0;  // samples beyond full scale, or no numbers

    // `peak` is the channel's in this block; as it is hardly ever beyond full scale, most blocks need no second look.
    void add(const float* samples, int frames, float blockPeak) {
        if (blockPeak <= 1) {
            peak = std::max(peak, double(blockPeak));
            return;
        }
        for (const float sample : std::span(samples, size_t(frames))) {
            if (std::abs(sample) <= 1) { continue; }
            ++clipped;
            if (!std::isnan(sample)) { peak = std::max(peak, double(std::abs(sample))); }
        }
        peak = std::max(peak, clipped > 0 ? 1.0 : 0.0);
    }
};

}  // namespace brindlehum
