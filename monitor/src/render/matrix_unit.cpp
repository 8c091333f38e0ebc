#include "monitor/render/matrix_unit.h"

#include <algorithm>
#include <cmath>

#include "mix/render/largest_magnitude.h"

namespace brindlehum {

MatrixUnit::MatrixUnit()
    : context_(RenderContext::Feed::device), inputPeaks_(mn_peaks_create(RenderContext::maxSourceChannels)) {}

MatrixUnit::~MatrixUnit() {
    mn_peaks_destroy(inputPeaks_);
}

void MatrixUnit::restart(double sampleRate) noexcept {
    sampleRate_ = sampleRate;
    level_ = 0;
    linked_ = 0;
    settled_ = 0;
    silent_ = true;
}

int32_t MatrixUnit::render(uint32_t frames, const DeviceBuffers& buffers) noexcept {
    const auto n = int32_t(std::min({frames, buffers.frames, uint32_t(RenderContext::maxFrames)}));
    measureInputs(buffers, n);
    tap_.write(buffers, n);
    context_.render(frames, buffers);
    const bool settled = isSettled(buffers, n);
    const bool audible = audible_.load(std::memory_order_relaxed) && (settled || level_ > 0);
    const double step = (audible ? 1 / riseSeconds : -1 / fallSeconds) / sampleRate_;
    for (int32_t c = 0; c < buffers.channels; ++c) {
        float* const plane = buffers.planes[c];
        if (plane != nullptr && c < RenderContext::maxDeviceChannels && n > 0) { guard(c, plane, n); }
        align_.process(c, plane, n);
        if (plane == nullptr) { continue; }
        if (audible && level_ == 1) { continue; }
        for (int32_t i = 0; i < n; ++i) { plane[i] *= float(std::clamp(level_ + step * (i + 1), 0.0, 1.0)); }
    }
    level_ = std::clamp(level_ + step * n, 0.0, 1.0);
    silent_.store(!audible && level_ == 0, std::memory_order_release);
    return 0;
}

// Whether the inputs have been linked for a while. Without any there is nothing to hear, so the next ones rise again.
bool MatrixUnit::isSettled(const DeviceBuffers& buffers, int32_t frames) noexcept {
    int32_t linked = 0;
    for (int32_t c = 0; c < buffers.inputChannels; ++c) { linked += buffers.inputs[c] != nullptr ? 1 : 0; }
    if (linked == 0) { level_ = 0; }
    settled_ = linked == linked_ ? std::min(settled_ + frames, int32_t(sampleRate_)) : 0;
    linked_ = linked;
    return linked > 0 && settled_ >= int32_t(settleSeconds * sampleRate_);
}

void MatrixUnit::measureInputs(const DeviceBuffers& buffers, int32_t frames) noexcept {
    const int32_t channels = std::min(buffers.inputChannels, int32_t(RenderContext::maxSourceChannels));
    for (int32_t c = 0; c < channels; ++c) {
        const float* const plane = buffers.inputs[c];
        if (plane != nullptr) { mn_peaks_raise(inputPeaks_, c, largestMagnitude(plane, frames)); }
    }
}

// A bus that sends what isn't a number is muted for the block: loudspeakers don't forgive.
void MatrixUnit::guard(int channel, float* plane, int32_t frames) noexcept {
    if (std::isfinite(context_.magnitude(channel))) { return; }
    std::fill_n(plane, frames, 0.0F);
    faults_.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace brindlehum
