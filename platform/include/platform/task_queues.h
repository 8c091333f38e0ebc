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

// Jobs run one after another on one thread of this name. Destruction finishes the job in hand and drops the rest.
class SerialQueue {
public:
    explicit SerialQueue(const std::string& label);
    ~SerialQueue();
    // Any thread.
    void async(std::function<void()> job);
    // Returns when all jobs queued before have run. Not from a job of the queue itself.
    void drain();

private:
    void run();
    std::mutex lock_;
    std::condition_variable wake_;
    std::condition_variable idle_;
    std::deque<std::function<void()>> jobs_;
    bool busy_ = false;
    bool ending_ = false;
    std::thread thread_;
};

// Jobs run on `threads` threads in the order they came. Destruction finishes the jobs in hand and drops the rest.
class WorkerPool {
public:
    explicit WorkerPool(int threads);
    ~WorkerPool();
    // Any thread.
    void async(std::function<void()> job);
    void drain();

private:
    void run();
    std::mutex lock_;
    std::condition_variable wake_;
    std::condition_variable idle_;
    std::deque<std::function<void()>> jobs_;
    int running_ = 0;
    bool ending_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace brindlehum
