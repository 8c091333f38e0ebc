// Sums of products of spectra, the inner loop of the convolver, in versions for the processor at hand.
#pragma once

#include <complex>

namespace brindlehum {

// Bins of one tile; spectra are padded to whole tiles and start on a cache line.
inline constexpr int tileBins = 16;

// One product: a spectrum of an input times one of a filter.
struct SpectralTerm {
    const std::complex<float>* input;
    const std::complex<float>* filter;
};

// sum[k] = sum over the terms of input[k] x filter[k], plus `base`[k] unless that is null; `bins` is a multiple of
// tileBins. Real-time safe.
using SpectralSum = void (*)(const SpectralTerm* terms, int count, const std::complex<float>* base, int bins,
                             std::complex<float>* sum);

void spectralSumPlain(const SpectralTerm* terms, int count, const std::complex<float>* base, int bins,
                      std::complex<float>* sum);
#if defined(__x86_64__)
// Asks for AVX2 and FMA.
void spectralSumAvx2(const SpectralTerm* terms, int count, const std::complex<float>* base, int bins,
                     std::complex<float>* sum);
#endif

// The fastest version that this processor runs.
SpectralSum fastestSpectralSum();

}  // namespace brindlehum
