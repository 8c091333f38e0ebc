// RealFFT: the core's real FFT as an object, with a scaled inverse and no alignment requirement.
#pragma once

#include <complex>
#include <memory>

#include "core/mn_fft.h"
#include "dsp/aligned_array.h"

namespace brindlehum {

// Construction plans and allocates (control side, any thread). forward and inverse are real-time safe, on one thread at
// a time.
class RealFFT {
public:
    // `size` samples, a power of two from 4 to 2^30. Throws std::invalid_argument for any other size,
    // std::runtime_error without a plan and std::bad_alloc without memory.
    explicit RealFFT(int size);

    int size() const noexcept { return mn_fft_size(fft_.get()); }
    // size / 2 + 1, from 0 Hz to the Nyquist frequency.
    int bins() const noexcept { return mn_fft_bins(fft_.get()); }

    // Unscaled forward transform of size() samples into bins() values. Leaves `time` unchanged. Data aligned to 64
    // bytes is fastest; other data is copied.
    void forward(const float* time, std::complex<float>* spectrum) noexcept;
    // Inverse with 1 / size scaling, so that inverse(forward(x)) is x. Leaves `spectrum` unchanged.
    void inverse(const std::complex<float>* spectrum, float* time) noexcept;

private:
    struct Destroy {
        void operator()(mn_fft* fft) const noexcept { mn_fft_destroy(fft); }
    };
    std::unique_ptr<mn_fft, Destroy> fft_;
    AlignedArray<float> time_;
    AlignedArray<std::complex<float>> spectrum_;
};

}  // namespace brindlehum
