// MainLoop: the only access to time and to the main thread, so that a test can own the clock.
#pragma once

#include <functional>
#include <memory>

namespace brindlehum {

// A pending call. Destroying or cancelling it on the main thread prevents any further run.
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
    // Runs once after `seconds`, unless the handle is destroyed before. Main thread.
    [[nodiscard]] virtual TimerHandle after(double seconds, std::function<void()> job) = 0;
    // Runs once after `seconds`, even if the caller is gone by then; for deferred frees. Main thread.
    virtual void later(double seconds, std::function<void()> job) = 0;
    // Runs every `seconds` until the handle is destroyed. Main thread.
    [[nodiscard]] virtual TimerHandle every(double seconds, std::function<void()> job) = 0;
    // Seconds on a steady clock. Any thread.
    virtual double now() const = 0;
};

}  // namespace brindlehum
