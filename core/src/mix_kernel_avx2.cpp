// The row kernel for AVX2 and FMA: a stretch of the outputs stays in registers while all taps are added.
#if defined(__x86_64__)

#include <immintrin.h>

#include "mix_kernel.h"

#define BRINDLEHUM_AVX2 __attribute__((target("avx2,fma"), always_inline)) inline

namespace brindlehum::core {
namespace {

// Vectors are 8 floats wide.
template <int Rows, int Vectors, bool Ramped>
BRINDLEHUM_AVX2 void addTaps(const Tap* taps, int32_t count, const float* ramp, float* const* outs, int32_t at) {
    __m256 sums[Rows][Vectors];
    __m256 fade[Vectors];
    for (int v = 0; v < Vectors; ++v) {
        for (int r = 0; r < Rows; ++r) { sums[r][v] = _mm256_loadu_ps(outs[r] + at + 8 * v); }
        if constexpr (Ramped) { fade[v] = _mm256_loadu_ps(ramp + at + 8 * v); }
    }
    for (int32_t t = 0; t < count; ++t) {
        __m256 gains[Rows];
        for (int r = 0; r < Rows; ++r) { gains[r] = _mm256_broadcast_ss(taps[t].gains.data() + r); }
        const float* input = taps[t].input + at;
        for (int v = 0; v < Vectors; ++v) {
            const __m256 in = _mm256_loadu_ps(input + 8 * v);
            for (int r = 0; r < Rows; ++r) {
                const __m256 gain = Ramped ? _mm256_mul_ps(gains[r], fade[v]) : gains[r];
                sums[r][v] = _mm256_fmadd_ps(gain, in, sums[r][v]);
            }
        }
    }
    for (int v = 0; v < Vectors; ++v) {
        for (int r = 0; r < Rows; ++r) { _mm256_storeu_ps(outs[r] + at + 8 * v, sums[r][v]); }
    }
}

template <int Rows, bool Ramped>
BRINDLEHUM_AVX2 void addFrame(const Tap* taps, int32_t count, const float* ramp, float* const* outs, int32_t at) {
    for (int r = 0; r < Rows; ++r) {
        __m128 sum = _mm_load_ss(outs[r] + at);
        for (int32_t t = 0; t < count; ++t) {
            __m128 gain = _mm_load_ss(taps[t].gains.data() + r);
            if constexpr (Ramped) { gain = _mm_mul_ss(gain, _mm_load_ss(ramp + at)); }
            sum = _mm_fmadd_ss(gain, _mm_load_ss(taps[t].input + at), sum);
        }
        _mm_store_ss(outs[r] + at, sum);
    }
}

// `Wide` vectors of each row keep 6 to 8 additions in flight, which hides their latency of 4 cycles at 2 per cycle, and
// leaves registers for gains and ramps. Measured against other shapes: 4 rows of 2 vectors came within a tenth of the
// multiply-add bound.
template <int Rows, int Wide, bool Ramped>
BRINDLEHUM_AVX2 void addRows(const Tap* taps, int32_t count, const float* ramp, int32_t frames, float* const* outs) {
    int32_t i = 0;
    for (; i + 8 * Wide <= frames; i += 8 * Wide) { addTaps<Rows, Wide, Ramped>(taps, count, ramp, outs, i); }
    for (; i + 16 <= frames; i += 16) { addTaps<Rows, 2, Ramped>(taps, count, ramp, outs, i); }
    for (; i + 8 <= frames; i += 8) { addTaps<Rows, 1, Ramped>(taps, count, ramp, outs, i); }
    for (; i < frames; ++i) { addFrame<Rows, Ramped>(taps, count, ramp, outs, i); }
}

}  // namespace

__attribute__((target("avx2,fma"))) void mixRowsAvx2(const Tap* taps, int32_t count, int32_t rows, const float* ramp,
                                                     int32_t frames, float* const* outs) {
    if (ramp != nullptr) {
        addRows<1, 6, true>(taps, count, ramp, frames, outs);
    } else if (rows == 1) {
        addRows<1, 8, false>(taps, count, ramp, frames, outs);
    } else {
        addRows<rowGroup, 2, false>(taps, count, ramp, frames, outs);
    }
}

}  // namespace brindlehum::core

#endif
