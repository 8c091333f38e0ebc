// X11Keys: the thread that brings a window to the front, presses keys in it, and gives the keyboard back.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/main_loop.h"
#include "x11_presser.h"

namespace brindlehum {

// Main thread, unless said otherwise.
class X11Keys {
public:
    explicit X11Keys(MainLoop& loop);
    ~X11Keys();
    X11Keys(const X11Keys&) = delete;
    X11Keys& operator=(const X11Keys&) = delete;

    bool isReady() const { return presser_->isReady(); }
    // `done` is called on the main thread, unless this object has ended. A key that fails takes those that wait behind
    // it along: they would come late, or fight with the user for the focus.
    void press(X11Presser::Target target, const Keystroke& stroke, std::function<void(KeyOutcome)> done);
    // Waits at most for the key that is being pressed.
    void finish();

private:
    struct Job {
        X11Presser::Target target;
        Keystroke stroke;
        std::function<void(KeyOutcome)> done;
    };
    using Clock = std::chrono::steady_clock;

    // All on the thread:
    void run();
    KeyOutcome deliver(const Job& job);
    KeyOutcome pressUntil(const Job& job, Clock::time_point limit);
    void tell(Job job, KeyOutcome outcome);
    void giveBack();

    MainLoop& loop_;
    std::unique_ptr<X11Presser> presser_ = std::make_unique<X11Presser>();  // the thread's, once it runs
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);            // main thread; posted calls look at it
    std::mutex lock_;
    std::condition_variable wake_;
    std::deque<Job> jobs_;  // under the lock, as the next
    bool ends_ = false;
    // The thread's:
    xcb_window_t borrowedFrom_ = 0;  // the window that had the keyboard
    X11Presser::Target borrower_;
    Clock::time_point lastJob_;
    std::thread thread_;  // started by the first press
};

}  // namespace brindlehum
