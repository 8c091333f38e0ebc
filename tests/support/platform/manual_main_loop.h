// ManualMainLoop: a main loop whose clock stands still until its owner moves it.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/main_loop.h"

namespace brindlehum {

// The thread that calls drain, advance and runUntil is the main thread. Timers and jobs still pending at the
// destruction are dropped unrun; the handles may outlive the loop.
class ManualMainLoop : public MainLoop {
public:
    void post(std::function<void()> job) override {
        {
            const std::lock_guard guard(lock_);
            jobs_.push_back(std::move(job));
        }
        posted_.notify_all();
    }
    [[nodiscard]] TimerHandle after(double seconds, std::function<void()> job) override {
        return std::make_unique<Handle>(add(seconds, -1, std::move(job)));
    }
    void later(double seconds, std::function<void()> job) override { add(seconds, -1, std::move(job)); }
    [[nodiscard]] TimerHandle every(double seconds, std::function<void()> job) override {
        return std::make_unique<Handle>(add(seconds, std::max(seconds, 0.001), std::move(job)));
    }
    // Seconds that were advanced, from 0.
    double now() const override { return now_; }

    // Runs the posted jobs, and those that they post, until none waits.
    void drain() {
        while (true) {
            std::function<void()> job;
            {
                const std::lock_guard guard(lock_);
                if (jobs_.empty()) { return; }
                job = std::move(jobs_.front());
                jobs_.pop_front();
            }
            job();
        }
    }
    // Moves the clock, running each timer at its own due time (at the same time: in order of their starting), and
    // posted jobs before and after each of them.
    void advance(double seconds) {
        const double target = now_ + seconds;
        drain();
        while (const auto entry = nextDue(target)) {
            now_ = std::max<double>(now_, entry->due);
            if (entry->period >= 0) { entry->due += entry->period; }
            entry->job();
            drain();
        }
        now_ = target;
    }
    // Timers that are yet to run.
    ptrdiff_t timers() const {
        return std::ranges::count_if(timers_, [](const auto& entry) { return !entry->cancelled; });
    }
    // Runs posted jobs as other threads bring them until `done` holds; the clock stands. False when it still
    // doesn't after `patience` seconds of real time.
    bool runUntil(const std::function<bool()>& done, double patience = 20) {
        const auto limit = std::chrono::system_clock::now() + std::chrono::duration<double>(patience);
        while (true) {
            drain();
            if (done()) { return true; }
            if (std::chrono::system_clock::now() > limit) { return false; }
            std::unique_lock guard(lock_);
            // Short waits, since `done` may look at things that announce themselves by no job.
            if (jobs_.empty()) { posted_.wait_for(guard, std::chrono::milliseconds(2)); }
        }
    }

private:
    struct Entry {
        double due;     // seconds
        double period;  // seconds; negative: once
        uint64_t order;
        std::function<void()> job;
        bool cancelled = false;
    };
    struct Handle : Timer {
        explicit Handle(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
        ~Handle() override { entry_->cancelled = true; }
        std::shared_ptr<Entry> entry_;
    };
    std::shared_ptr<Entry> add(double seconds, double period, std::function<void()> job) {
        const double due = now_ + std::max(seconds, 0.0);
        return timers_.emplace_back(std::make_shared<Entry>(Entry{due, period, ++order_, std::move(job)}));
    }
    // The timer that comes next, taken out of the list if it's a single one; none when nothing is due by `limit`.
    std::shared_ptr<Entry> nextDue(double limit) {
        std::erase_if(timers_, [](const auto& entry) { return entry->cancelled; });
        const auto next = std::ranges::min_element(
            timers_, {}, [](const auto& entry) { return std::pair(entry->due, entry->order); });
        if (next == timers_.end() || (*next)->due > limit) { return nullptr; }
        auto entry = *next;
        if (entry->period < 0) { timers_.erase(next); }
        return entry;
    }

    std::mutex lock_;  // guards jobs_
    std::condition_variable posted_;
    std::deque<std::function<void()>> jobs_;
    std::atomic<double> now_ = 0;
    std::vector<std::shared_ptr<Entry>> timers_;  // main thread
    uint64_t order_ = 0;
};

}  // namespace brindlehum
