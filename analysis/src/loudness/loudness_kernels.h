// The inner loops of the loudness measurement, in versions for different processors.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "analysis/loudness/loudness.h"

namespace brindlehum::Loudness {

// Filter memory for a group of up to 4 channels.
struct KState {
    struct Stage {
        double x1[4] = {}, x2[4] = {}, y1[4] = {}, y2[4] = {};
    };
    Stage shelf, highPass;
};

// The taps of each true-peak phase.
inline constexpr int peakTaps = 48;
inline constexpr int peakPhases = 4;
using PeakFilter = std::array<std::array<float, peakPhases>, peakTaps>;  // indexed by tap, then phase

struct Kernels {
    // Adds the sums of squares of the K-weighted samples [from, from + count) to `energies`, for 1, 2 or 4 channels.
    using KEnergy = void (*)(const float* const* channels, int64_t from, int64_t count, const Biquad& shelf,
                             const Biquad& highPass, KState& state, double* energies);
    KEnergy one, two, four;
    // The largest magnitude over all phases of 48 outputs; reads 95 samples.
    float (*peakBlock)(const float* x, const PeakFilter& filter);
    // The largest magnitude of `count` samples.
    float (*largest)(const float* x, int64_t count);
};

// Kernels without vector instructions beyond the baseline.
const Kernels& plainKernels();
// The fastest kernels that this processor runs. All versions agree within the rounding of their sums.
const Kernels& fastestKernels();

// As truePeak, but may return `floor` for a peak that doesn't exceed it: blocks that can't exceed it are skipped.
float truePeakAbove(std::span<const float> x, float floor, const Kernels& kernels);

}  // namespace brindlehum::Loudness
