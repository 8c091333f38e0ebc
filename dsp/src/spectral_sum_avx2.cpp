// The spectral sum for AVX2 and FMA: a tile of sums stays in registers while all terms are added.
#if defined(__x86_64__)

#include <immintrin.h>

#include "spectral_sum.h"

namespace brindlehum {

namespace {

const float* floats(const std::complex<float>* values) {
    return reinterpret_cast<const float*>(values);
}

}  // namespace

// With x = a + bi, the sums of a x (re h, im h) and of b x (re h, im h) are two independent chains of multiply-adds.
// Once per tile the second is swapped crosswise and added to give the complex sum.
__attribute__((target("avx2,fma"))) void spectralSumAvx2(const SpectralTerm* terms, int count,
                                                         const SpectrumPair* bases, int bins,
                                                         const SpectrumPair& sums) {
    constexpr int vectors = tileBins / 4;
    for (int tile = 0; tile < bins; tile += tileBins) {
        __m256 real[outputPair][vectors];
        __m256 imaginary[outputPair][vectors];
        for (size_t o = 0; o < outputPair; ++o) {
            for (int v = 0; v < vectors; ++v) {
                real[o][v] =
                    bases != nullptr ? _mm256_load_ps(floats((*bases)[o] + tile + 4 * v)) : _mm256_setzero_ps();
                imaginary[o][v] = _mm256_setzero_ps();
            }
        }
        for (int t = 0; t < count; ++t) {
            const SpectralTerm& term = terms[t];
            for (int v = 0; v < vectors; ++v) {
                const __m256 input = _mm256_load_ps(floats(term.input + tile + 4 * v));
                const __m256 a = _mm256_moveldup_ps(input);
                const __m256 b = _mm256_movehdup_ps(input);
                for (size_t o = 0; o < outputPair; ++o) {
                    const __m256 filter = _mm256_load_ps(floats(term.filters[o] + tile + 4 * v));
                    real[o][v] = _mm256_fmadd_ps(a, filter, real[o][v]);
                    imaginary[o][v] = _mm256_fmadd_ps(b, filter, imaginary[o][v]);
                }
            }
        }
        for (size_t o = 0; o < outputPair; ++o) {
            for (int v = 0; v < vectors; ++v) {
                const __m256 crossed = _mm256_permute_ps(imaginary[o][v], 0b10110001);
                _mm256_store_ps(reinterpret_cast<float*>(sums[o] + tile + 4 * v),
                                _mm256_addsub_ps(real[o][v], crossed));
            }
        }
    }
}

}  // namespace brindlehum

#endif
