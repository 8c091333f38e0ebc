// The thread of the keys.
#include "x11_keys.h"

#include <pthread.h>

#include <utility>

namespace brindlehum {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 300ms;  // with a window that doesn't come to the front
constexpr int lookAgainMs = 5;    // meanwhile, unless an event comes before
constexpr auto settling = 50ms;   // of a window manager that names the active window after the focus has moved
constexpr auto burst = 150ms;     // commands that follow each other faster keep the window in front

}  // namespace

X11Keys::X11Keys(MainLoop& loop) : loop_(loop) {}

X11Keys::~X11Keys() {
    *alive_ = false;
    finish();
}

void X11Keys::press(X11Presser::Target target, const Keystroke& stroke, std::function<void(KeyOutcome)> done) {
    {
        const std::lock_guard guard(lock_);
        if (ends_) { return; }
        jobs_.push_back({std::move(target), stroke, std::move(done)});
    }
    wake_.notify_one();
    if (!thread_.joinable()) {
        thread_ = std::thread([this] { run(); });
    }
}

void X11Keys::finish() {
    {
        const std::lock_guard guard(lock_);
        ends_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable()) { thread_.join(); }
}

void X11Keys::run() {
    pthread_setname_np(pthread_self(), "Brindlehum.keys");
    for (;;) {
        std::unique_lock guard(lock_);
        const auto isDue = [this] { return ends_ || !jobs_.empty(); };
        if (borrowedFrom_ == 0) {
            wake_.wait(guard, isDue);
        } else if (!wake_.wait_until(guard, lastJob_ + burst, isDue)) {
            guard.unlock();
            giveBack();
            continue;
        }
        if (ends_) { break; }
        Job job = std::move(jobs_.front());
        jobs_.pop_front();
        guard.unlock();
        const bool follows = Clock::now() - lastJob_ < burst;
        const KeyOutcome outcome = deliver(job);
        lastJob_ = Clock::now();
        std::deque<Job> failed;
        guard.lock();
        if (outcome == KeyOutcome::notInFront || outcome == KeyOutcome::busy) { failed.swap(jobs_); }
        const bool isAlone = !follows && jobs_.empty();
        guard.unlock();
        if (isAlone) { giveBack(); }
        tell(std::move(job), outcome);
        for (Job& waiting : failed) { tell(std::move(waiting), outcome); }
    }
    giveBack();
}

KeyOutcome X11Keys::deliver(const Job& job) {
    const auto start = Clock::now();
    const auto limit = start + patience;
    while (!presser_->isInFront(job.target)) {
        const xcb_window_t before = presser_->active();
        if (before == job.target.window && Clock::now() < start + settling) {
            presser_->wait(lookAgainMs);
            continue;
        }
        if (borrowedFrom_ == 0 && before != job.target.window) {
            borrowedFrom_ = before;
            borrower_ = job.target;
        }
        presser_->watch(job.target.window);
        presser_->activate(job.target.window);
        const KeyOutcome outcome = pressUntil(job, limit);
        presser_->watch(0);
        return outcome;
    }
    return pressUntil(job, limit);
}

// Tries again until the window is in front and the keyboard free.
KeyOutcome X11Keys::pressUntil(const Job& job, Clock::time_point limit) {
    for (;;) {
        const KeyOutcome outcome = presser_->press(job.target, job.stroke);
        const bool mayPass = outcome == KeyOutcome::notInFront || outcome == KeyOutcome::busy;
        if (!mayPass || Clock::now() > limit) { return outcome; }
        presser_->wait(lookAgainMs);
    }
}

void X11Keys::tell(Job job, KeyOutcome outcome) {
    if (!job.done) { return; }
    loop_.post([alive = alive_, done = std::move(job.done), outcome] {
        if (*alive) { done(outcome); }
    });
}

// Unless the user has turned to another window meanwhile.
void X11Keys::giveBack() {
    const xcb_window_t window = std::exchange(borrowedFrom_, 0);
    if (window != 0 && presser_->isInFront(borrower_)) { presser_->activate(window); }
}

}  // namespace brindlehum
