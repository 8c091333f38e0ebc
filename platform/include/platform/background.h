// Background: runs work on a queue and brings its result back to the main thread, unless newer work overtook it.
#pragma once

#include <atomic>
#include <concepts>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/main_loop.h"
#include "platform/task_queues.h"

namespace brindlehum {

// All calls are for the main thread, except those of Task. How an owner uses it:
//
//     Background loader_{loop, "Brindlehum.loader"};  // the last member, so that its thread ends first
//     Background::Line loads_;
//     ...
//     loader_.run(loads_, [path] { return AudioFileInfo::load(path); },          // on the queue
//                 [this](AudioFileInfo info) { show(std::move(info)); },         // on the main thread
//                 [this](const std::exception& error) { say(error.what()); });   // instead, when the work threw
//
// Work and callbacks may hold `this`: the destructor drops all results, skips work that hasn't begun, and waits for the
// running work. The main loop must outlive the queue.
class Background {
    class Ticket;

public:
    // Lets running work check for a stop and report progress; work may take one. Any thread, until the work returns.
    class Task {
    public:
        // True once nobody wants the result any more: the work should then return any value.
        bool isStopped() const { return token_.stop_requested(); }
        const std::stop_token& token() const { return token_; }
        // Runs `call` on the main thread before the result arrives; drops it if the work has been overtaken by then.
        void tell(std::function<void()> call) const;

    private:
        friend class Background;
        Task(MainLoop& loop, std::shared_ptr<Ticket> ticket);
        MainLoop& loop_;
        std::shared_ptr<Ticket> ticket_;
        std::stop_token token_;
    };

    // A series of requests where only the newest counts. New work on a line overtakes the line's earlier work: that is
    // asked to stop, doesn't begin if it still waits, and none of its callbacks run. The owner holds the line, and may
    // keep several for one queue.
    class Line {
    public:
        Line() = default;
        ~Line() { cancel(); }
        Line(const Line&) = delete;
        Line& operator=(const Line&) = delete;
        // Overtakes the newest work without starting new work.
        void cancel();
        // True from run() until just before the newest work's callback, or cancel().
        bool isBusy() const;

    private:
        friend class Background;
        std::shared_ptr<Ticket> newest_;
    };

    // Starts a thread of this name, which runs the work in the order given.
    Background(MainLoop& loop, const std::string& label);
    // On a queue that others use, too: work of several owners that mustn't run at the same time.
    Background(MainLoop& loop, std::shared_ptr<SerialQueue> queue);
    ~Background();
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    // Runs `work()` or `work(const Task&)` on the queue, then `done(its result)` on the main thread, or `done()` if the
    // work returns nothing. If the work throws, calls `failed(const std::exception&)` instead; without a `failed`, the
    // exception ends the process. Callbacks may start new work and may destroy the Background.
    template <class Work, class Done>
    void run(Work work, Done done) {
        start(nullptr, makeJob(std::move(work), std::move(done), nullptr));
    }
    template <class Work, class Done, class Failed>
    void run(Work work, Done done, Failed failed) {
        start(nullptr, makeJob(std::move(work), std::move(done), std::move(failed)));
    }
    // The same, as the newest work of a line.
    template <class Work, class Done>
    void run(Line& line, Work work, Done done) {
        start(&line, makeJob(std::move(work), std::move(done), nullptr));
    }
    template <class Work, class Done, class Failed>
    void run(Line& line, Work work, Done done, Failed failed) {
        start(&line, makeJob(std::move(work), std::move(done), std::move(failed)));
    }

    // Asks all work given so far to stop. It still begins and returns; whether it ends early is up to the work.
    void stop();
    // Drops the work that hasn't begun, as if it had been overtaken.
    void dropWaiting();
    // Number of jobs that haven't returned to the main thread, including overtaken ones.
    int pending() const;
    // Returns when all work given before has run, on a shared queue that of the others, too. Its results still have to
    // arrive through the main loop.
    void drain() { queue_->drain(); }
    // The same, but gives up after `patience` seconds and returns false.
    bool drainFor(double patience) { return queue_->drainFor(patience); }

private:
    class Ticket {
    public:
        enum class State { waiting, begun, dropped };
        bool begin();  // false once dropped
        void drop();
        void dropIfWaiting();
        bool isDropped() const { return state_ == State::dropped; }
        std::stop_source stop;
        bool back = false;  // main thread
        void end();         // the work has returned
        // Main thread, after a drop: returns when the work doesn't run any more.
        void wait() const;

    private:
        std::atomic<State> state_ = State::waiting;
        bool hadBegun_ = false;  // when it was dropped; main thread
        std::atomic<bool> hasEnded_ = false;
    };

    struct Job {
        virtual ~Job() = default;
        virtual void work(const Task& task) = 0;  // on the queue
        virtual void forget() = 0;                // on the queue: frees the result
        virtual void finish() = 0;                // on the main thread
    };
    template <class Work, class Done, class Failed>
    struct JobOf;
    template <class Work, class Done, class Failed>
    static std::unique_ptr<Job> makeJob(Work work, Done done, Failed failed) {
        return std::make_unique<JobOf<Work, Done, Failed>>(std::move(work), std::move(done), std::move(failed));
    }
    void start(Line* line, std::unique_ptr<Job> job);

    using Tickets = std::vector<std::shared_ptr<Ticket>>;
    MainLoop& loop_;
    std::shared_ptr<Tickets> open_ = std::make_shared<Tickets>();  // main thread; work that hasn't returned
    std::shared_ptr<SerialQueue> queue_;
};

template <class Work, class Done, class Failed>
struct Background::JobOf : Job {
    JobOf(Work&& ourWork, Done&& ourDone, Failed&& ourFailed)
        : work_(std::move(ourWork)), done_(std::move(ourDone)), failed_(std::move(ourFailed)) {}

    void work(const Task& task) override {
        if constexpr (mayFail) {
            try {
                call(task);
            } catch (...) { error_ = std::current_exception(); }
        } else {
            call(task);
        }
    }

    void forget() override {
        result_.reset();
        error_ = nullptr;
    }

    void finish() override {
        if constexpr (mayFail) {
            if (error_) {
                try {
                    std::rethrow_exception(error_);
                } catch (const std::exception& error) { failed_(error); }
                return;
            }
        }
        if constexpr (std::is_void_v<Result>) {
            done_();
        } else {
            done_(std::move(*result_));
        }
    }

private:
    static constexpr bool mayFail = !std::is_same_v<Failed, std::nullptr_t>;
    static auto resultOf(Work& work, const Task& task) {
        if constexpr (std::invocable<Work&, const Task&>) {
            return work(task);
        } else {
            return work();
        }
    }
    using Result = decltype(resultOf(std::declval<Work&>(), std::declval<const Task&>()));

    void call(const Task& task) {
        if constexpr (std::is_void_v<Result>) {
            resultOf(work_, task);
        } else {
            result_.emplace(resultOf(work_, task));
        }
    }

    Work work_;
    Done done_;
    Failed failed_;
    std::optional<std::conditional_t<std::is_void_v<Result>, std::monostate, Result>> result_;
    std::exception_ptr error_;
};

}  // namespace brindlehum
