// RenderWatch: counts the blocks that a device has rendered, so that keepFor frees nothing that a block may still read.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/audio_system.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Sits between the device and the real target. Shared by everything that retires objects from that target's audio path.
class RenderWatch : public RenderTarget {
public:
    explicit RenderWatch(RenderTarget& target) : target_(target) {}

    // The device's render thread.
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        const int32_t status = target_.render(frames, buffers);
        if (!target_.holdsReplaced()) { blocks_.fetch_add(1, std::memory_order_release); }
        return status;
    }

    // Sets whether the device may call. Control side.
    void setRunning(bool running) noexcept { running_ = running; }
    // Blocks rendered so far that held on to nothing replaced before. Any thread.
    uint64_t blocks() const noexcept { return blocks_.load(std::memory_order_acquire); }
    // Whether a block may still read an object that was unpublished when blocks() was `mark`. The current block may
    // have loaded it, and the next one fades it out, so two blocks must have ended. Control side.
    bool mayStillUse(uint64_t mark) const noexcept { return running_ && blocks() - mark < 2; }

private:
    RenderTarget& target_;
    std::atomic<uint64_t> blocks_{0};
    bool running_ = false;
};

// Keeps `object`, which has just been taken out of the audio path, for `seconds` and then releases it. A device that
// stalls meanwhile (a suspended machine, a hanging sound server) wakes up with the old pointers, so the wait is renewed
// until the device has rendered on or has been paused. Main thread.
inline void keepFor(double seconds, MainLoop& loop, std::shared_ptr<const RenderWatch> watch, uint64_t mark,
                    std::shared_ptr<const void> object) {
    loop.later(seconds, [seconds, &loop, watch = std::move(watch), mark, object = std::move(object)] {
        if (watch->mayStillUse(mark)) { keepFor(seconds, loop, watch, mark, object); }
    });
}

}  // namespace brindlehum
