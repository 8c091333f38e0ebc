// Versions of the row kernel, and the choice between them.
#include "mix_kernel.h"

#include "fused.h"

namespace brindlehum::core {

void mixRowsPlain(const Tap* taps, int32_t count, int32_t rows, const float* ramp, int32_t frames, float* const* outs) {
    for (int32_t r = 0; r < rows; ++r) {
        float* out = outs[r];
        for (int32_t t = 0; t < count; ++t) {
            const float gain = taps[t].gains[size_t(r)];
            const float* in = taps[t].input;
            if (ramp != nullptr) {
                for (int32_t i = 0; i < frames; ++i) { out[i] = fusedMultiplyAdd(gain * ramp[i], in[i], out[i]); }
            } else {
                for (int32_t i = 0; i < frames; ++i) { out[i] = fusedMultiplyAdd(gain, in[i], out[i]); }
            }
        }
    }
}

MixRows fastestMixRows() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) { return mixRowsAvx2; }
#endif
    return mixRowsPlain;
}

}  // namespace brindlehum::core
