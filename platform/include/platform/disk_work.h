// DiskWork: Background work at the disk that never waits behind work that hangs, as at a share whose server is gone.
#pragma once

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/background.h"

namespace brindlehum {

// Main thread. Its owner holds it where it would hold a Background.
class DiskWork {
public:
    DiskWork(MainLoop& loop, std::string label);

    // Where the next piece of work shall run: one thread for all, and another one once that has been busy for a while.
    Background& queue();
    // Asks at once and waits a moment, which nobody notices; empty if the disk doesn't answer by then. `question` must
    // not throw; it runs on another thread, and to its end.
    template <class Question>
    auto ask(Question question) {
        using Answer = std::invoke_result_t<Question&>;
        const auto promise = std::make_shared<std::promise<Answer>>();
        std::future<Answer> answer = promise->get_future();
        idle().work.run([promise, question = std::move(question)]() mutable { promise->set_value(question()); }, [] {});
        return answer.wait_for(moment) == std::future_status::ready ? std::optional(answer.get()) : std::nullopt;
    }
    // By ask().
    std::optional<bool> isFolder(const std::filesystem::path& path);
    // As those of Background, for all threads.
    void dropWaiting();
    int pending() const;
    void drain();

private:
    static constexpr double patience = 0.25;  // seconds
    static constexpr std::chrono::milliseconds moment{100};

    struct Thread {
        Thread(MainLoop& loop, const std::string& label) : work(loop, label) {}
        Background work;
        bool isSlow = false;  // has been busy for longer than `patience`
        TimerHandle timer;
    };
    Thread& idle();

    MainLoop& loop_;
    std::string label_;
    std::vector<std::unique_ptr<Thread>> threads_;  // as many as hang, and one
};

}  // namespace brindlehum
