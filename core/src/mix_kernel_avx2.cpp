// The row kernel for AVX2 and FMA: a stretch of the output stays in registers while all taps are added.
#if defined(__x86_64__)

#include <immintrin.h>

#include "mix_kernel.h"

#define BRINDLEHUM_AVX2 __attribute__((target("avx2,fma"), always_inline)) inline

namespace brindlehum::core {
namespace {

// Vectors of 8 floats.
template <int Vectors, bool Ramped>
BRINDLEHUM_AVX2 void addTaps(const Tap* taps, int32_t count, const float* ramp, int32_t at, float* out) {
    __m256 sum[Vectors];
    __m256 fade[Vectors];
    for (int v = 0; v < Vectors; ++v) {
        sum[v] = _mm256_loadu_ps(out + at + 8 * v);
        if constexpr (Ramped) fade[v] = _mm256_loadu_ps(ramp + at + 8 * v);
    }
    for (int32_t t = 0; t < count; ++t) {
        const __m256 gain = _mm256_broadcast_ss(&taps[t].gain);
        const float* in = taps[t].input + at;
        for (int v = 0; v < Vectors; ++v) {
            const __m256 g = Ramped ? _mm256_mul_ps(gain, fade[v]) : gain;
            sum[v] = _mm256_fmadd_ps(g, _mm256_loadu_ps(in + 8 * v), sum[v]);
        }
    }
    for (int v = 0; v < Vectors; ++v) _mm256_storeu_ps(out + at + 8 * v, sum[v]);
}

// The widest stretch that keeps 8 additions in flight, or 6 beside their ramps, within 16 registers.
template <bool Ramped>
BRINDLEHUM_AVX2 void addRow(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* out) {
    constexpr int wide = Ramped ? 6 : 8;
    int32_t i = 0;
    for (; i + 8 * wide <= frames; i += 8 * wide) addTaps<wide, Ramped>(taps, count, ramp, i, out);
    for (; i + 16 <= frames; i += 16) addTaps<2, Ramped>(taps, count, ramp, i, out);
    for (; i + 8 <= frames; i += 8) addTaps<1, Ramped>(taps, count, ramp, i, out);
    for (; i < frames; ++i) {
        __m128 sum = _mm_load_ss(out + i);
        for (int32_t t = 0; t < count; ++t) {
            __m128 gain = _mm_load_ss(&taps[t].gain);
            if constexpr (Ramped) gain = _mm_mul_ss(gain, _mm_load_ss(ramp + i));
            sum = _mm_fmadd_ss(gain, _mm_load_ss(taps[t].input + i), sum);
        }
        _mm_store_ss(out + i, sum);
    }
}

}  // namespace

__attribute__((target("avx2,fma"))) void mixRowAvx2(const Tap* taps, int32_t count, const float* ramp, int32_t frames,
                                                    float* out) {
    if (ramp != nullptr) {
        addRow<true>(taps, count, ramp, frames, out);
    } else {
        addRow<false>(taps, count, ramp, frames, out);
    }
}

}  // namespace brindlehum::core

#endif
