// What an upmix processor holds.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "core/mn_cells.h"
#include "core/mn_fft.h"
#include "core/mn_upmix.h"
#include "upmix_kernels.h"
#include "upmix_smoothing.h"

namespace brindlehum::core {

inline constexpr int32_t delayRingFrames = 16384;

struct UpmixInput {
    float* time;  // the last N samples
    Spectrum spectrum;
    bool transformed;  // `spectrum` is this hop's
};

struct UpmixOutput {
    Spectrum spectrum;
    bool used;       // something was added to `spectrum` in this hop
    float* sum;      // N samples of overlap-add, the finished hop first
    float* block;    // the hop that is played now
    float* history;  // ring of delayRingFrames
    int32_t delay;   // samples
};

}  // namespace brindlehum::core

// Read and written by process, except `plan`; all arrays lie in `memory`, on cache lines of their own.
struct mn_upmix {
    int32_t ins, outs, size, hop, bins;
    float keep;         // of the recursive averages, a hop
    mn_fft* fft;        // of the inputs
    mn_fft_pair* pair;  // of the outputs
    const brindlehum::core::UpmixKernels* kernels;
    std::atomic<const mn_upmix_plan*> plan;
    std::byte* memory;

    float* window;     // before the forward transform
    float* synthesis;  // the window with the transforms' scale, after the inverse
    float* bias;       // a bin
    std::array<brindlehum::core::UpmixInput, mn_upmix_max_in> in;
    std::array<brindlehum::core::UpmixOutput, mn_upmix_max_out> out;
    std::array<brindlehum::core::PairPowers, mn_upmix_max_pairs> averages;

    // Scratch of one hop.
    brindlehum::core::PairPowers smoothed;
    brindlehum::core::RunningSums sums;
    brindlehum::core::Split split;
    brindlehum::core::Spectrum spread, foldLeft, foldRight;  // of exact plans
    float* spectrum;                                         // interleaved, N + 2
    brindlehum::core::Spectrum joined;                       // N bins
    float* time;                                             // N
    float* other;                                            // N

    int32_t position;    // samples of the hop that have come in
    int32_t writeIndex;  // in all history rings

    // Levels: `measures` is written by the control side, the peaks are taken by it.
    std::atomic<int32_t> measures;
    mn_peaks* directPeaks;
    mn_peaks* ambiencePeaks;
    uint32_t hops;                                                     // counted for the measuring
    bool measuresHop;                                                  // this one
    std::array<float, mn_upmix_max_out> directPowers, ambiencePowers;  // of this hop, a sum over bins
};

namespace brindlehum::core {

inline ConstSpectrum read(Spectrum s) {
    return {s.re, s.im};
}
inline void clear(Spectrum s, int32_t bins) {
    std::fill_n(s.re, bins, 0.0F);
    std::fill_n(s.im, bins, 0.0F);
}

// What output i takes of pair p, whose split is in `u`.
Share shareOf(const mn_upmix& u, const mn_upmix_plan& plan, int32_t p, int32_t i);
bool isSilent(const Share& share);

// Runs when a hop has come in: makes the next block of every output.
void runUpmixHop(mn_upmix& u);

// Rounded and limited; 0 without a plan or a list.
int32_t plannedDelay(const mn_upmix_plan* plan, int32_t output);

}  // namespace brindlehum::core
