// Sums of products of spectra, the inner loop of the convolver, in versions for different processors.
#pragma once

#include <array>
#include <complex>
#include <cstddef>

namespace brindlehum {

// Bins of one tile; spectra are padded to whole tiles and start on a cache line.
inline constexpr int tileBins = 8;

// Outputs that are summed side by side: each input is then read once for both.
inline constexpr int outputPair = 2;

// One term of the sum: an input's spectrum times the spectrum of its filter to each output.
struct SpectralTerm {
    const std::complex<float>* input;
    std::array<const std::complex<float>*, outputPair> filters;
};

using SpectrumPair = std::array<std::complex<float>*, outputPair>;

// sums[o][k] = sum over the terms of input[k] x filters[o][k], plus bases[o][k] unless `bases` is null; `bins` is a
// multiple of tileBins. Real-time safe.
using SpectralSum = void (*)(const SpectralTerm* terms, int count, const SpectrumPair* bases, int bins,
                             const SpectrumPair& sums);

void spectralSumPlain(const SpectralTerm* terms, int count, const SpectrumPair* bases, int bins,
                      const SpectrumPair& sums);
#if defined(__x86_64__)
// Needs AVX2 and FMA.
void spectralSumAvx2(const SpectralTerm* terms, int count, const SpectrumPair* bases, int bins,
                     const SpectrumPair& sums);
#endif

// The fastest version that this processor runs.
SpectralSum fastestSpectralSum();

}  // namespace brindlehum
