// True peak: oversamples 4 times with a windowed sinc, and only where a new peak is possible.
#include "loudness/true_peak.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "dsp/signal.h"

namespace brindlehum::Loudness {
namespace {

constexpr size_t pieceSamples = 16384;  // of a whole signal, measured at a time

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

const PeakFilter& filter() {
    static const PeakFilter filter = makeFilter();
    return filter;
}

}  // namespace

TruePeak::TruePeak(const Kernels& kernels) : kernels_(&kernels), held_(size_t(peakTaps), 0.0F) {}

float TruePeak::push(std::span<const float> block, float floor) {
    held_.insert(held_.end(), block.begin(), block.end());
    return measure(floor);
}

float TruePeak::finish(float floor) {
    // The filter rings for a block of outputs after the last sample.
    held_.resize((held_.size() + 2 * peakTaps - 1) / peakTaps * peakTaps, 0.0F);
    return measure(floor);
}

// Outputs are computed in blocks of 48. Each depends on its own block of samples and the one before.
float TruePeak::measure(float floor) {
    static const float gain = largestGain(filter());
    const size_t blocks = held_.size() / peakTaps - 1;
    if (blocks == 0) { return floor; }
    largest_.resize(blocks + 1);
    for (size_t b = 0; b <= blocks; ++b) { largest_[b] = kernels_->largest(held_.data() + b * peakTaps, peakTaps); }
    float peak = floor;
    const auto offer = [&](size_t b) {
        if (!(gain * std::max(largest_[b], largest_[b + 1]) > peak)) { return; }
        peak = std::max(peak, kernels_->peakBlock(held_.data() + b * peakTaps, filter()));
    };
    // Compute the loudest block first, so that most others can be skipped.
    const auto loudest = size_t(std::ranges::max_element(largest_) - largest_.begin());
    offer(std::min(loudest, blocks - 1));
    for (size_t b = 0; b < blocks; ++b) { offer(b); }
    held_.erase(held_.begin(), held_.begin() + ptrdiff_t(blocks * peakTaps));
    return peak;
}

float truePeakAbove(std::span<const float> x, float floor, const Kernels& kernels) {
    TruePeak meter(kernels);
    for (; !x.empty(); x = x.subspan(std::min(x.size(), pieceSamples))) {
        floor = meter.push(x.first(std::min(x.size(), pieceSamples)), floor);
    }
    return meter.finish(floor);
}

float truePeak(std::span<const float> x) {
    std::vector<float> store;
    return truePeakAbove(Signal::usable(x, store), 0, fastestKernels());
}

}  // namespace brindlehum::Loudness
