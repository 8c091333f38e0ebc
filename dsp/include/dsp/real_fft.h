// Real-to-complex FFT of one fixed power-of-two size, single precision, over FFTW.
#pragma once

#include <complex>
#include <memory>
#include <span>

namespace brindlehum {

// Construction plans (control side, any thread; FFTW's planner is guarded inside) and may allocate; forward and
// inverse are real-time safe and may be called from one thread at a time per object.
class RealFFT {
public:
    // `size` samples, a power of two of at least 4. Throws std::invalid_argument.
    explicit RealFFT(int size);
    ~RealFFT();
    RealFFT(RealFFT&&) noexcept;
    RealFFT& operator=(RealFFT&&) noexcept;

    int size() const noexcept;
    // size / 2 + 1.
    int bins() const noexcept;

    // Unscaled forward transform: `time` holds size() samples, `spectrum` receives bins() values. No alignment
    // is asked for; neither side is changed but the destination.
    void forward(const float* time, std::complex<float>* spectrum) noexcept;
    // Inverse with 1 / size scaling, so that inverse(forward(x)) is x. `spectrum` is left as it was.
    void inverse(const std::complex<float>* spectrum, float* time) noexcept;

private:
    struct Plan;
    std::unique_ptr<Plan> plan_;
};

}  // namespace brindlehum
