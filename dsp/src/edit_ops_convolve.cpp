// Linear convolution by overlap-add (Stockham 1966), and the synthetic hall that mostly uses it.
#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <cstring>
#include <stdexcept>

#include "dsp/aligned_array.h"
#include "dsp/real_fft.h"
#include "edit_ops_detail.h"

namespace brindlehum::EditOps {
namespace {

// Below this size a transform's call overhead exceeds its work.
constexpr size_t smallestBlock = 512;
constexpr size_t largestBlock = size_t(1) << 28;

// Multiplies spectra by the response's, block by block of the longer side.
class BlockConvolver {
public:
    BlockConvolver(std::span<const float> response, size_t block)
        : block_(block),
          fft_(int(2 * block)),
          time_(makeAligned<float>(2 * block)),
          response_(makeAligned<std::complex<float>>(block + 1)),
          spectrum_(makeAligned<std::complex<float>>(block + 1)) {
        std::ranges::copy(response, time_.get());
        fft_.forward(time_.get(), response_.get());
    }

    // Adds the convolution of up to a block of samples to `out`.
    void add(std::span<const float> samples, std::span<float> out) {
        std::ranges::copy(samples, time_.get());
        std::fill(time_.get() + samples.size(), time_.get() + 2 * block_, 0.0F);
        fft_.forward(time_.get(), spectrum_.get());
        // Multiply by parts: the library's complex product checks for infinities and can't be vectorised.
        for (size_t k = 0; k <= block_; ++k) {
            const std::complex<float> x = spectrum_[k];
            const std::complex<float> h = response_[k];
            spectrum_[k] = {x.real() * h.real() - x.imag() * h.imag(), x.real() * h.imag() + x.imag() * h.real()};
        }
        fft_.inverse(spectrum_.get(), time_.get());
        for (size_t i = 0; i < out.size(); ++i) { out[i] += time_[i]; }
    }

private:
    size_t block_;
    RealFFT fft_;
    AlignedArray<float> time_;
    AlignedArray<std::complex<float>> response_, spectrum_;
};

}  // namespace

std::vector<float> convolve(std::span<const float> signal, std::span<const float> response, const Progress& progress) {
    if (signal.empty() || response.empty()) { return {}; }
    // Make the shorter side the response, so that a short signal through a long hall costs no more than the reverse.
    if (signal.size() < response.size()) { std::swap(signal, response); }
    std::vector<float> out(signal.size() + response.size() - 1);
    if (response.size() == 1) {
        std::ranges::transform(signal, out.begin(), [&](float x) { return x * response[0]; });
        return out;
    }
    const size_t block = std::max(std::bit_ceil(response.size()), smallestBlock);
    if (block > largestBlock) { return {}; }
    try {
        BlockConvolver convolver(response, block);
        for (size_t at = 0; at < signal.size(); at += block) {
            if (progress && !progress(double(at) / double(signal.size()))) { return {}; }
            const size_t count = std::min(block, signal.size() - at);
            convolver.add(signal.subspan(at, count), std::span(out).subspan(at, count + response.size() - 1));
        }
    } catch (const std::runtime_error&) {  // no plan for this size
        return {};
    }
    return out;
}

RandomEngine systemSeeded() {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
    return RandomEngine(seed);
}

std::vector<float> hallIR(double sr, double seconds, RandomEngine& random) {
    constexpr double burstSeconds = 0.08;
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    std::vector<float> out(size_t(std::max<int64_t>(detail::framesIn(sr, seconds), 0)));
    for (size_t i = 0; i < out.size(); ++i) {
        const double t = double(i) / sr;
        double x = noise(random) * std::exp(-t / (0.35 * seconds));
        if (t < burstSeconds) { x += noise(random) * std::exp(-t / 0.02) * 0.3; }
        out[i] = float(x);
    }
    return out;
}

std::vector<float> hallIR(double sr, double seconds) {
    RandomEngine random = systemSeeded();
    return hallIR(sr, seconds, random);
}

}  // namespace brindlehum::EditOps
