// PipeWireLoop: the library's thread, its lock, and the context in which connections are made.
#pragma once

#include <pipewire/pipewire.h>

#include <functional>
#include <memory>

namespace brindlehum {

// Must outlive all other PipeWire objects. Main thread, except where stated.
class PipeWireLoop {
public:
    // Null when the library can't be set up on this machine.
    static std::shared_ptr<PipeWireLoop> make();
    ~PipeWireLoop();
    PipeWireLoop(const PipeWireLoop&) = delete;
    PipeWireLoop& operator=(const PipeWireLoop&) = delete;

    // Hold it around every call into the library from outside its thread; may nest.
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
    // With the lock held once: lets the library's thread work until `done` is true. False after `seconds`.
    bool waitUntil(double seconds, const std::function<bool()>& done);
    // On the library's thread with the lock held: makes waitUntil check its conditions again.
    void wake() { pw_thread_loop_signal(loop_, false); }
    // With the lock held: waits for the end of a process callback that may be running.
    void waitForProcess();

private:
    PipeWireLoop() = default;
    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
};

}  // namespace brindlehum
