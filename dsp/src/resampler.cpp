// Resampler: a soxr stream that asks its caller for input.
#include "dsp/resampler.h"

#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace brindlehum {
namespace {

constexpr int blockFrames = 4096;  // the most input frames at a time

}  // namespace

struct Resampler::State {
    soxr_t stream = nullptr;
    std::vector<const float*> inputs;
    std::vector<float*> outputs;  // where the current call continues to write
    bool drained = false;         // the input has ended; it isn't pulled again
    double ratio = 1;             // output frames per input frame
    int64_t taken = 0;            // input frames so far
    int64_t given = 0;            // output frames so far

    ~State() {
        if (stream != nullptr) { soxr_delete(stream); }
    }

    // Output frames for all input so far.
    int64_t length() const { return std::llround(double(taken) * ratio); }

    // Feeds `fed` frames of `inputs`, or the end of the input, and stores up to `frames` frames. With a null count
    // pointer soxr consumes all input at once, so the caller's planes are needed only during the call. (soxr's own pull
    // interface advances planar outputs wrongly.)
    size_t step(size_t fed, size_t frames) {
        size_t got = 0;
        const soxr_in_t in = drained ? nullptr : inputs.data();
        const soxr_error_t error = soxr_process(stream, in, fed, nullptr, outputs.data(), frames, &got);
        if (error != nullptr) { throw std::runtime_error(error); }
        for (float*& plane : outputs) { plane += got; }
        taken += int64_t(fed);
        given += int64_t(got);
        return got;
    }
};

Resampler::Resampler(double inputRate, double outputRate, int channels) : state_(std::make_unique<State>()) {
    if (!(inputRate > 0) || !(outputRate > 0) || !std::isfinite(inputRate) || !std::isfinite(outputRate) ||
        channels < 1) {
        throw std::runtime_error("rates and channels of a conversion must be above 0");
    }
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_S, SOXR_FLOAT32_S);
    // Without soxr's default roll-off, which trades 0.006 dB at 20 kHz for speed, the passband is flat up to its end at
    // 0.91 of the lower Nyquist frequency.
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, SOXR_ROLLOFF_NONE | SOXR_HI_PREC_CLOCK);
    const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
    soxr_error_t error = nullptr;
    state_->stream = soxr_create(inputRate, outputRate, unsigned(channels), &error, &io, &quality, &runtime);
    if (error != nullptr) { throw std::runtime_error(error); }
    state_->ratio = outputRate / inputRate;
    state_->inputs.resize(size_t(channels));
    state_->outputs.resize(size_t(channels));
}
Resampler::~Resampler() = default;
Resampler::Resampler(Resampler&&) noexcept = default;
Resampler& Resampler::operator=(Resampler&&) noexcept = default;

int Resampler::process(float* const* outputs, int frames, const Pull& pull) {
    State& s = *state_;
    std::copy_n(outputs, s.outputs.size(), s.outputs.begin());
    const int64_t start = s.given;
    int64_t end = start + std::max(frames, 0);
    if (s.drained) { end = std::min(end, s.length()); }
    size_t fed = 0;
    while (s.given < end) {
        const size_t got = s.step(fed, size_t(end - s.given));
        fed = 0;
        if (s.drained && got == 0) { break; }
        if (s.drained || s.given == end) { continue; }
        fed = size_t(std::clamp(pull(blockFrames, s.inputs.data()), 0, blockFrames));
        s.drained = fed == 0;
        if (s.drained) { end = std::min(end, s.length()); }
    }
    return int(s.given - start);
}

std::vector<float> Resampler::convert(const std::vector<float>& input, double inputRate, double outputRate) {
    Resampler stream(inputRate, outputRate, 1);
    std::vector<float> output(size_t(std::llround(double(input.size()) * outputRate / inputRate)));
    size_t read = 0;
    const Pull pull = [&](int limit, const float** planes) {
        const size_t n = std::min(size_t(limit), input.size() - read);
        planes[0] = input.data() + read;
        read += n;
        return int(n);
    };
    for (size_t done = 0; done < output.size();) {
        float* plane = output.data() + done;
        const int got = stream.process(&plane, int(std::min<size_t>(output.size() - done, 65536)), pull);
        if (got < 1) { break; }
        done += size_t(got);
    }
    return output;
}

}  // namespace brindlehum
