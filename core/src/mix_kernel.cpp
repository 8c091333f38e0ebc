// Versions of the row kernel, and the choice among them.
#include "mix_kernel.h"

#include "fused.h"

namespace brindlehum::core {

void mixRowPlain(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* out) {
    for (int32_t t = 0; t < count; ++t) {
        const auto [gain, in] = taps[t];
        if (ramp != nullptr) {
            for (int32_t i = 0; i < frames; ++i) out[i] = fusedMultiplyAdd(gain * ramp[i], in[i], out[i]);
        } else {
            for (int32_t i = 0; i < frames; ++i) out[i] = fusedMultiplyAdd(gain, in[i], out[i]);
        }
    }
}

MixRow fastestMixRow() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) return mixRowAvx2;
#endif
    return mixRowPlain;
}

}  // namespace brindlehum::core
