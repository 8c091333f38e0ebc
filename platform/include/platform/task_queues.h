// Background threads: a named serial queue, and a small pool for work that returns whole values.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace brindlehum {

// Starts jobs in the order they were queued, on `threads` threads of this name. The destructor finishes running jobs
// and drops the rest. A job may queue further jobs; an exception that leaves a job ends the process.
class WorkerPool {
public:
    explicit WorkerPool(int threads, const std::string& label = "Brindlehum.pool");
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // Any thread.
    void async(std::function<void()> job);
    // Returns when no job waits or runs, and the captures of the finished ones are released. Not from a job.
    void drain();
    // The same, but gives up after `patience` seconds and returns false.
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

// Runs jobs one after another on one thread of this name, under the same rules.
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
