// Versions of the spectral sum, and the choice between them.
#include "spectral_sum.h"

namespace brindlehum {

void spectralSumPlain(const SpectralTerm* terms, int count, const SpectrumPair* bases, int bins,
                      const SpectrumPair& sums) {
    for (size_t o = 0; o < outputPair; ++o) {
        for (int tile = 0; tile < bins; tile += tileBins) {
            float re[tileBins] = {};
            float im[tileBins] = {};
            for (int t = 0; t < count; ++t) {
                const auto* x = reinterpret_cast<const float*>(terms[t].input + tile);
                const auto* h = reinterpret_cast<const float*>(terms[t].filters[o] + tile);
                for (int k = 0; k < tileBins; ++k) {
                    re[k] += x[2 * k] * h[2 * k] - x[2 * k + 1] * h[2 * k + 1];
                    im[k] += x[2 * k] * h[2 * k + 1] + x[2 * k + 1] * h[2 * k];
                }
            }
            for (int k = tile; k < tile + tileBins; ++k) {
                sums[o][k] = std::complex<float>(re[k - tile], im[k - tile]);
                if (bases != nullptr) { sums[o][k] += (*bases)[o][k]; }
            }
        }
    }
}

SpectralSum fastestSpectralSum() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) { return spectralSumAvx2; }
#endif
    return spectralSumPlain;
}

}  // namespace brindlehum
