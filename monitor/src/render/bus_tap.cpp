// Writes the bus into the ring.
#include "monitor/render/bus_tap.h"

#include <algorithm>

namespace brindlehum {

void BusTap::open(int channels, double sampleRate) {
    const int width = std::min(channels, RenderContext::maxSourceChannels);
    ring_ = {mn_ring_create(width, int32_t(seconds * sampleRate)), mn_ring_destroy};
    silence_.assign(RenderContext::maxFrames, 0.0F);
    positions_.assign(RenderContext::maxFrames, 0.0);
}

void BusTap::write(const DeviceBuffers& buffers, int32_t frames) noexcept {
    mn_ring* const ring = ring_.get();
    if (ring == nullptr) { return; }
    const int32_t count = std::min(frames, int32_t(RenderContext::maxFrames));
    for (int32_t c = 0; c < mn_ring_channels(ring); ++c) {
        const float* const plane = c < buffers.inputChannels ? buffers.inputs[c] : nullptr;
        planes_[size_t(c)] = plane != nullptr ? plane : silence_.data();
    }
    mn_ring_write(ring, planes_.data(), positions_.data(), count);
}

}  // namespace brindlehum
