// The inner loop of the mix kernel, in versions for different processors.
#pragma once

#include <array>
#include <cstdint>

namespace brindlehum::core {

// The most rows that are added side by side: each input is then read once for all of them.
inline constexpr int32_t rowGroup = 4;

// One input of a row, or of a group of rows that skip the same inputs.
struct Tap {
    std::array<float, rowGroup> gains;
    const float* input;
};

// out[r][i] = fma(gains[r] x ramp[i], input[i], out[r][i]) for each tap in order. `rows` is 1 or rowGroup; `ramp` may
// be null, and is allowed with one row only. All versions return the same bits.
using MixRows = void (*)(const Tap* taps, int32_t count, int32_t rows, const float* ramp, int32_t frames,
                         float* const* outs);

void mixRowsPlain(const Tap* taps, int32_t count, int32_t rows, const float* ramp, int32_t frames, float* const* outs);
#if defined(__x86_64__)
// Needs AVX2 and FMA.
void mixRowsAvx2(const Tap* taps, int32_t count, int32_t rows, const float* ramp, int32_t frames, float* const* outs);
#endif

// The fastest version that this processor runs.
MixRows fastestMixRows();

}  // namespace brindlehum::core
