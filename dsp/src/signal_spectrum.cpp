// Windowing, transform and magnitudes in one pass over a frame.
#include "dsp/signal_spectrum.h"

#include <algorithm>
#include <cmath>

#include "dsp/signal.h"

namespace brindlehum {

HannSpectrum::HannSpectrum(int size)
    : fft_(size),
      window_(makeAligned<float>(size_t(size))),
      frame_(makeAligned<float>(size_t(size))),
      spectrum_(makeAligned<std::complex<float>>(size_t(size) / 2 + 1)) {
    std::ranges::copy(Signal::hanning(size), window_.get());
}

void HannSpectrum::magnitudes(const float* samples, float* into) noexcept {
    const float* window = window_.get();
    float* frame = frame_.get();
    const int count = size();
    for (int i = 0; i < count; ++i) { frame[i] = samples[i] * window[i]; }
    fft_.forward(frame, spectrum_.get());
    const auto* parts = reinterpret_cast<const float*>(spectrum_.get());  // the layout of std::complex is fixed
    const int last = count / 2;
    for (int k = 0; k <= last; ++k) {
        const float re = parts[2 * k];
        const float im = parts[2 * k + 1];
        into[k] = std::sqrt(re * re + im * im);
    }
}

}  // namespace brindlehum
