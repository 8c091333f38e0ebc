// Background threads: a serial queue with a name, and a small pool for work that hands whole values back.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace brindlehum {

// Jobs start in the order they came, on `threads` threads of this name. Destruction finishes the jobs in hand and
// drops the rest unrun. A job may queue further jobs; an exception that leaves a job ends the process.
class WorkerPool {
public:
    explicit WorkerPool(int threads, const std::string& label = "Brindlehum.pool");
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // Any thread.
    void async(std::function<void()> job);
    // Returns when no job waits or runs, and what the finished ones held is released. Not from a job.
    void drain();
    // The same, but gives up after `patience` seconds: false then.
    bool drainFor(double patience);

private:
    bool isIdle() const { return jobs_.empty() && running_ == 0; }  // under the lock
    void run();
    std::mutex lock_;
    std::condition_variable wake_;
    std::condition_variable idle_;
    std::deque<std::function<void()>> jobs_;
    int running_ = 0;
    bool ending_ = false;
    std::vector<std::thread> threads_;
};

// Jobs run one after another on one thread of this name, under the same rules.
class SerialQueue {
public:
    explicit SerialQueue(const std::string& label) : pool_(1, label) {}
    // Any thread.
    void async(std::function<void()> job) { pool_.async(std::move(job)); }
    // Returns when all jobs queued before have run. Not from a job of the queue itself.
    void drain() { pool_.drain(); }
    bool drainFor(double patience) { return pool_.drainFor(patience); }

private:
    WorkerPool pool_;
};

}  // namespace brindlehum
