// BusTap: hands what a stream hears to a reader on another thread, by a lock-free ring.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "core/mn_ring.h"
#include "mix/render/render_context.h"

namespace brindlehum {

class BusTap {
public:
    // What a reader may be late by.
    static constexpr double seconds = 1;

    // Control side, only while no render runs. `channels` from 1, `sampleRate` in Hz. Without memory nothing is handed
    // over.
    void open(int channels, double sampleRate);
    void close() { ring_.reset(); }
    // Null while closed. Its only reader may hold it for longer. Control side.
    std::shared_ptr<mn_ring> ring() const { return ring_; }

    // Render thread: never allocates, locks, logs or throws. What a full ring can't take is lost.
    void write(const DeviceBuffers& buffers, int32_t frames) noexcept;

private:
    std::shared_ptr<mn_ring> ring_;
    std::array<const float*, RenderContext::maxSourceChannels> planes_{};
    std::vector<float> silence_;
    std::vector<double> positions_;  // the ring wants some
};

}  // namespace brindlehum
