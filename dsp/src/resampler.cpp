// Resampler: a soxr stream that asks its caller for input.
#include "dsp/resampler.h"

#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

namespace brindlehum {
namespace {

constexpr int blockFrames = 4096;

}  // namespace

struct Resampler::State {
    soxr_t stream = nullptr;
    std::vector<const float*> planes;
    const Pull* pull = nullptr;  // of the call in hand
    bool drained = false;        // the input has ended; it isn't asked again
    std::exception_ptr fault;    // thrown by `pull`, carried across the C frames

    ~State() {
        if (stream != nullptr) soxr_delete(stream);
    }

    static size_t supply(void* context, soxr_in_t* data, size_t limit) {
        auto& self = *static_cast<State*>(context);
        *data = self.planes.data();
        if (self.drained) return 0;
        int got = 0;
        try {
            got = (*self.pull)(static_cast<int>(limit), self.planes.data());
        } catch (...) {
            self.fault = std::current_exception();
        }
        self.drained = got < 1;
        return self.drained ? 0 : std::min(static_cast<size_t>(got), limit);
    }
};

Resampler::Resampler(double inputRate, double outputRate, int channels) : state_(std::make_unique<State>()) {
    if (!(inputRate > 0) || !(outputRate > 0) || !std::isfinite(inputRate) || !std::isfinite(outputRate) ||
        channels < 1) {
        throw std::runtime_error("rates and channels of a conversion must be above 0");
    }
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_S, SOXR_FLOAT32_S);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, SOXR_HI_PREC_CLOCK);
    const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
    soxr_error_t error = nullptr;
    state_->stream =
        soxr_create(inputRate, outputRate, static_cast<unsigned>(channels), &error, &io, &quality, &runtime);
    if (error == nullptr) error = soxr_set_input_fn(state_->stream, State::supply, state_.get(), blockFrames);
    if (error != nullptr) throw std::runtime_error(error);
    state_->planes.resize(static_cast<size_t>(channels));
}
Resampler::~Resampler() = default;
Resampler::Resampler(Resampler&&) noexcept = default;
Resampler& Resampler::operator=(Resampler&&) noexcept = default;

int Resampler::process(float* const* outputs, int frames, const Pull& pull) {
    if (frames < 1) return 0;
    state_->pull = &pull;
    const size_t got =
        soxr_output(state_->stream, const_cast<float**>(outputs), static_cast<size_t>(frames));  // writes samples only
    state_->pull = nullptr;
    if (state_->fault) std::rethrow_exception(std::exchange(state_->fault, nullptr));
    if (const soxr_error_t error = soxr_error(state_->stream)) throw std::runtime_error(error);
    return static_cast<int>(got);
}

std::vector<float> Resampler::convert(const std::vector<float>& input, double inputRate, double outputRate) {
    Resampler stream(inputRate, outputRate, 1);
    std::vector<float> output(static_cast<size_t>(std::llround(double(input.size()) * outputRate / inputRate)));
    size_t read = 0;
    const Pull pull = [&](int limit, const float** planes) {
        const size_t n = std::min(static_cast<size_t>(limit), input.size() - read);
        planes[0] = input.data() + read;
        read += n;
        return static_cast<int>(n);
    };
    for (size_t done = 0; done < output.size();) {
        float* plane = output.data() + done;
        const int got = stream.process(&plane, static_cast<int>(std::min<size_t>(output.size() - done, 65536)), pull);
        if (got < 1) break;
        done += static_cast<size_t>(got);
    }
    return output;
}

}  // namespace brindlehum
