// The spectral sum for AVX2 and FMA: a tile of sums stays in registers while all terms are added.
#if defined(__x86_64__)

#include <immintrin.h>

#include "spectral_sum.h"

namespace brindlehum {

// With x = a + bi: the sums of a x (re h, im h) and of b x (re h, im h) run apart, two independent chains of
// multiply-adds; crossing the second over, once a tile, gives the complex sum.
__attribute__((target("avx2,fma"))) void spectralSumAvx2(const SpectralTerm* terms, int count,
                                                         const std::complex<float>* base, int bins,
                                                         std::complex<float>* sum) {
    constexpr int vectors = tileBins / 4;
    for (int tile = 0; tile < bins; tile += tileBins) {
        __m256 real[vectors];
        __m256 imaginary[vectors];
        for (int v = 0; v < vectors; ++v) {
            real[v] = base != nullptr ? _mm256_load_ps(reinterpret_cast<const float*>(base + tile + 4 * v))
                                      : _mm256_setzero_ps();
            imaginary[v] = _mm256_setzero_ps();
        }
        for (int t = 0; t < count; ++t) {
            const auto* x = reinterpret_cast<const float*>(terms[t].input + tile);
            const auto* h = reinterpret_cast<const float*>(terms[t].filter + tile);
            for (int v = 0; v < vectors; ++v) {
                const __m256 input = _mm256_load_ps(x + 8 * v);
                const __m256 filter = _mm256_load_ps(h + 8 * v);
                real[v] = _mm256_fmadd_ps(_mm256_moveldup_ps(input), filter, real[v]);
                imaginary[v] = _mm256_fmadd_ps(_mm256_movehdup_ps(input), filter, imaginary[v]);
            }
        }
        for (int v = 0; v < vectors; ++v) {
            const __m256 crossed = _mm256_permute_ps(imaginary[v], 0b10110001);
            _mm256_store_ps(reinterpret_cast<float*>(sum + tile + 4 * v), _mm256_addsub_ps(real[v], crossed));
        }
    }
}

}  // namespace brindlehum

#endif
