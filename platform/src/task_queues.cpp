// The threads behind WorkerPool and SerialQueue.
#include "platform/task_queues.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>

namespace brindlehum {

namespace {
constexpr size_t longestThreadName = 15;  // bytes, a limit of the kernel
}

WorkerPool::WorkerPool(int threads, const std::string& label) {
    for (int i = 0; i < std::max(threads, 1); ++i) {
        threads_.emplace_back([this, name = label.substr(0, longestThreadName)] {
            pthread_setname_np(pthread_self(), name.c_str());
            run();
        });
    }
}

WorkerPool::~WorkerPool() {
    {
        const std::lock_guard guard(lock_);
        ending_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) { thread.join(); }
}

void WorkerPool::async(std::function<void()> job) {
    {
        const std::lock_guard guard(lock_);
        jobs_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void WorkerPool::drain() {
    std::unique_lock guard(lock_);
    idle_.wait(guard, [this] { return isIdle(); });
}

bool WorkerPool::drainFor(double patience) {
    std::unique_lock guard(lock_);
    return idle_.wait_for(guard, std::chrono::duration<double>(patience), [this] { return isIdle(); });
}

void WorkerPool::run() {
    std::unique_lock guard(lock_);
    while (true) {
        wake_.wait(guard, [this] { return ending_ || !jobs_.empty(); });
        if (ending_) { return; }
        auto job = std::move(jobs_.front());
        jobs_.pop_front();
        ++running_;
        guard.unlock();
        job();
        job = nullptr;  // release it before it counts as done
        guard.lock();
        --running_;
        if (isIdle()) { idle_.notify_all(); }
    }
}

}  // namespace brindlehum
