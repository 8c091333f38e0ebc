// HannSpectrum: magnitudes of Hann-windowed frames, the front end of the tempo and chroma analyses.
#pragma once

#include <complex>

#include "dsp/aligned_array.h"
#include "dsp/real_fft.h"

namespace brindlehum {

// Use one instance per routine; it holds work buffers, so one thread at a time.
class HannSpectrum {
public:
    // `size` samples per frame, a power of two of at least 4.
    explicit HannSpectrum(int size);

    int size() const { return fft_.size(); }
    int bins() const { return fft_.bins(); }

    // Windows size() samples and stores bins() magnitudes |X[k]| of the plain, unscaled discrete Fourier transform.
    void magnitudes(const float* samples, float* into) noexcept;

private:
    RealFFT fft_;
    AlignedArray<float> window_, frame_;
    AlignedArray<std::complex<float>> spectrum_;
};

}  // namespace brindlehum
