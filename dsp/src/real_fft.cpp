// RealFFT: cache-line aligned buffers around the core's transform.
#include "dsp/real_fft.h"

#include <bit>
#include <cstring>
#include <stdexcept>
#include <string>

namespace brindlehum {
namespace {

float* parts(std::complex<float>* values) {
    return reinterpret_cast<float*>(values);  // the layout of std::complex is fixed
}

bool isAligned(const void* p) {
    return (reinterpret_cast<uintptr_t>(p) % cacheLine) == 0;
}

}  // namespace

RealFFT::RealFFT(int size) {
    if (size < 4 || !std::has_single_bit(unsigned(size))) {
        throw std::invalid_argument("an FFT size is a power of two from 4 up");
    }
    fft_.reset(mn_fft_create(size));
    if (!fft_) { throw std::runtime_error("no FFT of " + std::to_string(size) + " points can be had"); }
    time_ = makeAligned<float>(size_t(size));
    spectrum_ = makeAligned<std::complex<float>>(size_t(bins()));
}

void RealFFT::forward(const float* time, std::complex<float>* spectrum) noexcept {
    const float* source = time;
    if (!isAligned(time)) {
        source = static_cast<float*>(std::memcpy(time_.get(), time, sizeof(float) * size_t(size())));
    }
    std::complex<float>* destination = isAligned(spectrum) ? spectrum : spectrum_.get();
    mn_fft_forward(fft_.get(), source, parts(destination));
    if (destination != spectrum) { std::memcpy(spectrum, destination, sizeof(*spectrum) * size_t(bins())); }
}

void RealFFT::inverse(const std::complex<float>* spectrum, float* time) noexcept {
    // The transform destroys its input, so the input is copied; scaling the copy costs nothing more.
    const float scale = 1.0F / float(size());
    const int count = bins();
    for (int k = 0; k < count; ++k) { spectrum_[size_t(k)] = spectrum[k] * scale; }
    float* destination = isAligned(time) ? time : time_.get();
    mn_fft_inverse(fft_.get(), parts(spectrum_.get()), destination);
    if (destination != time) { std::memcpy(time, destination, sizeof(float) * size_t(size())); }
}

}  // namespace brindlehum
