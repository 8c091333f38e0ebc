// Listener: the headless output with an ear: notes when sound goes out.
#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/headless_audio.h"

namespace brindlehum::bench {

using Clock = std::chrono::steady_clock;

// Notes when a block with sound, and one without any, has last gone out.
class Listener : public RenderTarget {
public:
    explicit Listener(RenderTarget& target) : target_(target) {}
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        const int32_t status = target_.render(frames, buffers);
        bool sound = false;
        for (int c = 0; c < buffers.channels && !sound; ++c) {
            sound = std::any_of(buffers.planes[c], buffers.planes[c] + frames, [](float x) { return x != 0; });
        }
        const int64_t now = Clock::now().time_since_epoch().count();
        if (!sound) {
            silent_ = true;
        } else if (armed_.exchange(false)) {
            heardAt_ = now;
        }
        return status;
    }
    void arm() {
        heardAt_ = 0;
        armed_ = true;
    }
    void awaitSilence() { silent_ = false; }
    bool isSilent() const { return silent_; }
    int64_t heardAt() const { return heardAt_; }

private:
    RenderTarget& target_;
    std::atomic<bool> armed_{false}, silent_{false};
    std::atomic<int64_t> heardAt_{0};
};

class ListeningSystem : public HeadlessAudioSystem {
public:
    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override {
        if (!listener) { listener = std::make_unique<Listener>(target); }
        return HeadlessAudioSystem::openOutput(id, followsDefault, *listener, std::move(onChange));
    }
    std::unique_ptr<Listener> listener;
};

inline void until(const std::function<bool()>& done) {
    QTimer tick;  // the render thread wakes nobody
    tick.start(2);
    while (!done()) { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }
}

}  // namespace brindlehum::bench
