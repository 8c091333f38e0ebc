// X11KeyGrab: the passive grab of Space, answered by a thread of its own.
#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include "platform/key_grab.h"
#include "platform/main_loop.h"

namespace brindlehum {

// The keyboard of the whole desktop waits from a grabbed key until its answer, so the thread reads one atomic word and
// answers at once: no lock, no D-Bus, no main thread. If the main loop takes over a second for a press, the grab is
// given back until it is there again.
class X11KeyGrab : public KeyGrab {
public:
    explicit X11KeyGrab(MainLoop& loop) : loop_(loop) {}
    ~X11KeyGrab() override;
    bool start(Heard heard) override;
    void setArmed(bool armed) override { setBit(armedBit, armed); }
    void setSwallows(bool swallows) override { setBit(swallowBit, swallows); }
    bool isRefused() const override { return shared_ && shared_->refused; }

private:
    static constexpr uint32_t armedBit = 1;
    static constexpr uint32_t swallowBit = 2;
    static constexpr uint32_t endBit = 4;

    struct Shared {
        std::atomic<uint32_t> word = 0;     // written by the main thread
        std::atomic<uint64_t> taken = 0;    // presses that the main loop has handled; written there
        std::atomic<bool> refused = false;  // written by the thread
        Heard heard;                        // main thread
    };
    class Keys;
    void setBit(uint32_t bit, bool on);

    MainLoop& loop_;
    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();  // posted jobs keep it
    int wake_ = -1;                                                // event descriptor
    std::thread thread_;
};

}  // namespace brindlehum
