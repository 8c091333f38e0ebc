// The clock and the queue of ManualMainLoop.
#include "support/platform/manual_main_loop.h"

#include <algorithm>
#include <chrono>

namespace brindlehum {

class ManualMainLoop::Handle : public Timer {
public:
    explicit Handle(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
    ~Handle() override { entry_->cancelled = true; }

private:
    std::shared_ptr<Entry> entry_;
};

void ManualMainLoop::post(std::function<void()> job) {
    {
        const std::lock_guard guard(lock_);
        jobs_.push_back(std::move(job));
    }
    posted_.notify_all();
}

std::shared_ptr<ManualMainLoop::Entry> ManualMainLoop::add(double seconds, double period, std::function<void()> job) {
    auto entry = std::make_shared<Entry>(Entry{now() + std::max(seconds, 0.0), period, ++order_, std::move(job)});
    timers_.push_back(entry);
    return entry;
}

TimerHandle ManualMainLoop::after(double seconds, std::function<void()> job) {
    return std::make_unique<Handle>(add(seconds, -1, std::move(job)));
}

void ManualMainLoop::later(double seconds, std::function<void()> job) {
    add(seconds, -1, std::move(job));
}

TimerHandle ManualMainLoop::every(double seconds, std::function<void()> job) {
    return std::make_unique<Handle>(add(seconds, std::max(seconds, 0.001), std::move(job)));
}

double ManualMainLoop::now() const {
    const std::lock_guard guard(lock_);
    return now_;
}

int ManualMainLoop::drain() {
    int ran = 0;
    while (true) {
        std::function<void()> job;
        {
            const std::lock_guard guard(lock_);
            if (jobs_.empty()) { return ran; }
            job = std::move(jobs_.front());
            jobs_.pop_front();
        }
        job();
        ++ran;
    }
}

// The timer that comes next, taken out of the list if it's a single one; none when nothing is due by `limit`.
std::shared_ptr<ManualMainLoop::Entry> ManualMainLoop::nextDue(double limit) {
    std::erase_if(timers_, [](const auto& entry) { return entry->cancelled; });
    const auto next = std::min_element(timers_.begin(), timers_.end(), [](const auto& a, const auto& b) {
        return a->due != b->due ? a->due < b->due : a->order < b->order;
    });
    if (next == timers_.end() || (*next)->due > limit) { return nullptr; }
    auto entry = *next;
    if (entry->period < 0) { timers_.erase(next); }
    return entry;
}

void ManualMainLoop::advance(double seconds) {
    const double target = now() + seconds;
    drain();
    while (const auto entry = nextDue(target)) {
        {
            const std::lock_guard guard(lock_);
            now_ = std::max(now_, entry->due);
        }
        if (entry->period >= 0) { entry->due += entry->period; }
        entry->job();
        drain();
    }
    const std::lock_guard guard(lock_);
    now_ = target;
}

bool ManualMainLoop::runUntil(const std::function<bool()>& done, double patience) {
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

}  // namespace brindlehum
