// True peak: oversamples 4 times with a windowed sinc, and only where a new peak is possible.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "dsp/signal.h"
#include "loudness_kernels.h"

namespace brindlehum::Loudness {
namespace {

// A prototype of 192 taps at four times the rate with a Blackman window, in phases of 48; its gain is the sinc's own.
PeakFilter makeFilter() {
    constexpr int taps = peakTaps * peakPhases;
    PeakFilter filter{};
    for (int i = 0; i < taps; ++i) {
        const double x = std::numbers::pi * (i - 95.5) / 4;
        const double turn = 2 * std::numbers::pi * i / (taps - 1);
        const double window = 0.42 - 0.5 * std::cos(turn) + 0.08 * std::cos(2 * turn);
        filter[size_t(i / peakPhases)][size_t(i % peakPhases)] = float(std::sin(x) / x * window);
    }
    return filter;
}

// The largest factor by which a phase can raise its samples, plus a margin for rounding.
float largestGain(const PeakFilter& filter) {
    float largest = 0;
    for (size_t p = 0; p < peakPhases; ++p) {
        float sum = 0;
        for (const auto& tap : filter) { sum += std::abs(tap[p]); }
        largest = std::max(largest, sum);
    }
    return largest * 1.0001F;
}

}  // namespace

float truePeakAbove(std::span<const float> x, float floor, const Kernels& kernels) {
    static const PeakFilter filter = makeFilter();
    static const float gain = largestGain(filter);
    if (x.empty()) { return floor; }
    // Outputs are computed in blocks of 48. Each depends on its own block of samples and the one before; 48 zeros
    // surround the signal, so one block of outputs follows the last block of samples.
    const auto count = int64_t(x.size());
    const int64_t blocks = (count + peakTaps - 1) / peakTaps;
    std::vector<float> largest(size_t(blocks) + 2, 0.0F);  // by block of samples: entry i is for block i - 1
    for (int64_t b = 0; b < blocks; ++b) {
        const int64_t from = b * peakTaps;
        largest[size_t(b) + 1] = kernels.largest(x.data() + from, std::min<int64_t>(peakTaps, count - from));
    }
    float peak = floor;
    const auto compute = [&](int64_t b) {
        const int64_t from = (b - 1) * peakTaps;
        if (from >= 0 && from + 2 * peakTaps <= count) { return kernels.peakBlock(x.data() + from, filter); }
        float padded[2 * peakTaps] = {};
        const int64_t first = std::max<int64_t>(from, 0);
        const int64_t last = std::min(from + 2 * peakTaps, count);
        if (first < last) { std::copy(x.data() + first, x.data() + last, padded + (first - from)); }
        return kernels.peakBlock(padded, filter);
    };
    const auto bound = [&](int64_t b) { return gain * std::max(largest[size_t(b)], largest[size_t(b) + 1]); };
    // Compute the loudest block first, so that most others can be skipped.
    const auto loudest = std::ranges::max_element(largest) - largest.begin() - 1;
    if (loudest >= 0) { peak = std::max(peak, compute(loudest)); }
    for (int64_t b = 0; b <= blocks; ++b) {
        if (bound(b) > peak) { peak = std::max(peak, compute(b)); }
    }
    return peak;
}

float truePeak(std::span<const float> x) {
    std::vector<float> store;
    return truePeakAbove(Signal::usable(x, store), 0, fastestKernels());
}

}  // namespace brindlehum::Loudness
