// ManualMainLoop: a main loop whose clock stands still until its owner moves it.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "platform/main_loop.h"

namespace brindlehum {

// The thread that calls drain, advance and runUntil is the main thread. Timers and jobs still pending at the
// destruction are dropped unrun; the handles may outlive the loop.
class ManualMainLoop : public MainLoop {
public:
    ManualMainLoop() = default;
    ManualMainLoop(const ManualMainLoop&) = delete;
    ManualMainLoop& operator=(const ManualMainLoop&) = delete;

    void post(std::function<void()> job) override;
    [[nodiscard]] TimerHandle after(double seconds, std::function<void()> job) override;
    void later(double seconds, std::function<void()> job) override;
    [[nodiscard]] TimerHandle every(double seconds, std::function<void()> job) override;
    // Seconds that were advanced, from 0.
    double now() const override;

    // Runs the posted jobs, and those that they post, until none waits. Gives how many ran.
    int drain();
    // Moves the clock, running each timer at its own due time (at the same time: in order of their starting), and
    // posted jobs before and after each of them.
    void advance(double seconds);
    // Runs posted jobs as other threads bring them until `done` holds; the clock stands. False when it still
    // doesn't after `patience` seconds of real time.
    bool runUntil(const std::function<bool()>& done, double patience = 20);

private:
    struct Entry {
        double due;     // seconds
        double period;  // seconds; negative: once
        uint64_t order;
        std::function<void()> job;
        bool cancelled = false;
    };
    class Handle;
    std::shared_ptr<Entry> add(double seconds, double period, std::function<void()> job);
    std::shared_ptr<Entry> nextDue(double limit);

    mutable std::mutex lock_;  // guards jobs_ and now_
    std::condition_variable posted_;
    std::deque<std::function<void()>> jobs_;
    double now_ = 0;
    std::vector<std::shared_ptr<Entry>> timers_;  // main thread
    uint64_t order_ = 0;
};

}  // namespace brindlehum
