// MainLoop: the one seam through which time and the main thread are reached, so that a test can own the clock.
#pragma once

#include <functional>
#include <memory>

namespace brindlehum {

// A pending call; destroying or cancelling it on the main thread means that it doesn't run any more.
class Timer {
public:
    virtual ~Timer() = default;
};
using TimerHandle = std::unique_ptr<Timer>;

class MainLoop {
public:
    virtual ~MainLoop() = default;
    // Runs `job` on the main thread, in order of posting. Any thread.
    virtual void post(std::function<void()> job) = 0;
    // Runs once after `seconds`, kept alive by the handle. Main thread.
    [[nodiscard]] virtual TimerHandle after(double seconds, std::function<void()> job) = 0;
    // Runs once after `seconds` whatever becomes of the caller: deferred frees. Main thread.
    virtual void later(double seconds, std::function<void()> job) = 0;
    // Runs every `seconds` until the handle goes. Main thread.
    [[nodiscard]] virtual TimerHandle every(double seconds, std::function<void()> job) = 0;
    // Seconds on a steady clock. Any thread.
    virtual double now() const = 0;
};

}  // namespace brindlehum
