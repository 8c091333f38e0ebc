// The inner loop of the mix kernel, in versions for the processor at hand.
#pragma once

#include <cstdint>

namespace brindlehum::core {

// One input of an output row.
struct Tap {
    float gain;
    const float* input;
};

// out[i] = fma(gain x ramp[i], input[i], out[i]) for each tap in order; `ramp` may be null. All versions give the
// same bits.
using MixRow = void (*)(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* out);

void mixRowPlain(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* out);
#if defined(__x86_64__)
// Asks for AVX2 and FMA.
void mixRowAvx2(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* out);
#endif

// The fastest version that this processor runs.
MixRow fastestMixRow();

}  // namespace brindlehum::core
