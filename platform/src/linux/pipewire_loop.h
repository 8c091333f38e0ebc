// PipeWireLoop: the library's thread, with its lock, and the context that connections are made in.
#pragma once

#include <pipewire/pipewire.h>

#include <functional>
#include <memory>

namespace brindlehum {

// Outlives everything of PipeWire. Main thread, except where stated.
class PipeWireLoop {
public:
    // Null when the library can't be set up on this machine.
    static std::shared_ptr<PipeWireLoop> make();
    ~PipeWireLoop();
    PipeWireLoop(const PipeWireLoop&) = delete;
    PipeWireLoop& operator=(const PipeWireLoop&) = delete;

    // Held around every call into the library from outside its thread; may nest.
    class Lock {
    public:
        explicit Lock(const PipeWireLoop& loop) : loop_(loop.loop_) { pw_thread_loop_lock(loop_); }
        ~Lock() { pw_thread_loop_unlock(loop_); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        pw_thread_loop* loop_;
    };

    pw_context* context() const { return context_; }
    pw_loop* events() const { return pw_thread_loop_get_loop(loop_); }
    // Lock held once: lets the library's thread work until `done` holds. False after `seconds`.
    bool waitUntil(double seconds, const std::function<bool()>& done);
    // The library's thread, lock held: looks at the conditions of waitUntil again.
    void wake() { pw_thread_loop_signal(loop_, false); }
    // Lock held: returns when a process callback that may be running has ended.
    void waitForProcess();

private:
    PipeWireLoop() = default;
    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
};

}  // namespace brindlehum
