// Background: which results come back, which work is skipped, and what an owner's end leaves behind.
#include "platform/background.h"

#include <future>
#include <latch>
#include <stdexcept>

#include "platform/disk_work.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Task = Background::Task;

// Holds up the work that waits for it until it is opened.
struct Gate {
    std::promise<void> entered, opened;
    void wait() {
        entered.set_value();
        opened.get_future().wait();
    }
    void untilEntered() { entered.get_future().wait(); }
    void open() { opened.set_value(); }
};

class BackgroundWork : public testing::Test {
protected:
    void settle() {
        background_->drain();
        loop_.drain();
    }
    // Keeps the queue busy until the gate is opened.
    void hold(Gate& gate) {
        background_->run([&gate] { gate.wait(); }, [] {});
        gate.untilEntered();
    }
    // Work that notes that it began, and returns its name.
    auto work(const std::string& name) {
        return [this, name] { return begun_.emplace_back(name); };
    }
    auto done() {
        return [this](const std::string& result) { said_.push_back(result); };
    }

    ManualMainLoop loop_;
    std::vector<std::string> begun_;  // on the queue
    std::vector<std::string> said_;   // on the main thread
    std::unique_ptr<Background> background_ = std::make_unique<Background>(loop_, "Brindlehum.test");
    Background::Line line_;
};

TEST_F(BackgroundWork, ResultsAndFailuresComeBackInOrderOnTheMainThread) {
    const auto main = std::this_thread::get_id();
    background_->run([] { return std::make_unique<std::thread::id>(std::this_thread::get_id()); },
                     [&](const std::unique_ptr<std::thread::id>& worker) {
                         EXPECT_NE(*worker, main);
                         EXPECT_EQ(std::this_thread::get_id(), main);
                         said_.emplace_back("moved");
                         background_->run(work("from a callback"), done());
                     });
    const auto fails = [this](const Task& task) -> int {
        task.tell([this] { said_.emplace_back("told"); });
        throw std::runtime_error("broken");
    };
    background_->run(
        fails, [](int) { FAIL(); }, [this](const std::exception& e) { said_.emplace_back(e.what()); });
    background_->run([] {}, [this] { said_.emplace_back("nothing to return"); });
    background_->drain();
    EXPECT_THAT(said_, IsEmpty());
    loop_.drain();
    settle();
    EXPECT_THAT(said_, ElementsAre("moved", "told", "broken", "nothing to return", "from a callback"));
    EXPECT_EQ(background_->pending(), 0);
}

TEST_F(BackgroundWork, OvertakenWorkThatWaitsNeverBegins) {
    Gate gate;
    hold(gate);
    Background::Line other;
    background_->run(line_, work("old"), done());
    background_->run(other, work("another line"), done());
    background_->run(line_, work("older"), done());
    background_->run(line_, work("newest"), done());
    gate.open();
    settle();
    EXPECT_THAT(begun_, ElementsAre("another line", "newest"));
    EXPECT_EQ(said_, begun_);
    EXPECT_FALSE(line_.isBusy());
}

TEST_F(BackgroundWork, OvertakenWorkIsAskedToStopAndItsCallbacksNeverRun) {
    Gate gate;
    bool stopped = false;
    const auto running = [&](const Task& task) {
        task.tell([] { FAIL() << "told too late"; });
        gate.wait();
        stopped = task.isStopped();
        throw std::runtime_error("nobody hears it");
    };
    background_->run(
        line_, running, [] { FAIL(); }, [](const std::exception&) { FAIL(); });
    gate.untilEntered();
    line_.cancel();
    EXPECT_FALSE(line_.isBusy());
    gate.open();
    background_->drain();
    EXPECT_TRUE(stopped);
    // A result that is already on its way back is overtaken just as well.
    background_->run(line_, work("old"), done());
    background_->drain();
    background_->run(line_, work("new"), done());
    settle();
    EXPECT_THAT(said_, ElementsAre("new"));
}

TEST_F(BackgroundWork, StoppedWorkComesBackAndDroppedWorkDoesNot) {
    Gate gate;
    hold(gate);
    const auto ending = [](const Task& task) { return std::string(task.isStopped() ? "stopped" : "finished"); };
    background_->run(ending, done());
    background_->stop();
    background_->run(ending, done());
    gate.open();
    settle();
    EXPECT_THAT(said_, ElementsAre("stopped", "finished"));

    Gate second;
    hold(second);
    background_->run(work("waiting"), done());
    background_->dropWaiting();
    second.open();
    settle();
    EXPECT_EQ(said_.size(), 2U);
    EXPECT_THAT(begun_, IsEmpty());
}

TEST_F(BackgroundWork, DestructionSkipsWaitingWorkDropsResultsAndReleasesBoth) {
    const auto held = std::make_shared<int>();
    background_->run([held] { return held; }, [held](const auto&) { FAIL() << "was on its way back"; });
    background_->drain();
    Gate gate;  // opened by the stop that the destruction requests, and waited for
    const auto running = [&](const Task& task) {
        const std::stop_callback opener(task.token(), [&] { gate.open(); });
        gate.wait();
    };
    background_->run(running, [held] {});
    gate.untilEntered();
    background_->run([held] { FAIL() << "waited"; }, [held] {});
    background_.reset();
    loop_.drain();
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(BackgroundWork, OwnersOfOneQueueTakeTurnsAndEndAlone) {
    const auto queue = std::make_shared<SerialQueue>("Brindlehum.shared");
    background_ = std::make_unique<Background>(loop_, queue);
    auto other = std::make_unique<Background>(loop_, queue);
    Gate gate;
    hold(gate);
    other->run(work("waits"), done());
    other = std::make_unique<Background>(loop_, queue);  // returns while the first one still works
    other->run(work("follows"), done());
    EXPECT_THAT(begun_, IsEmpty());
    gate.open();
    settle();
    EXPECT_THAT(begun_, ElementsAre("follows"));
    EXPECT_THAT(said_, ElementsAre("follows"));
}

TEST_F(BackgroundWork, CallbacksMayDestroyTheirOwner) {
    background_->run(work("last"), [this](const std::string& result) {
        background_.reset();
        said_.push_back(result);
    });
    background_->run(work("dropped"), done());
    EXPECT_TRUE(loop_.runUntil([this] { return !background_; }));
    loop_.drain();
    EXPECT_THAT(said_, ElementsAre("last"));
}

// For the thread sanitizer: a line that is asked anew at every stage of the work before.
TEST_F(BackgroundWork, OnlyTheNewestQuestionIsAnswered) {
    int newest = 0, answered = 0;
    for (int i = 1; i <= 3000; ++i) {
        newest = i;
        background_->run(
            line_, [i](const Task& task) { return std::make_shared<int>(task.isStopped() ? -1 : i); },
            [&](const std::shared_ptr<int>& answer) {
                EXPECT_EQ(*answer, newest);
                ++answered;
            });
        if (i % 3 == 0) { loop_.drain(); }
        if (i % 7 == 0) { background_->drain(); }
        if (i % 50 == 0) { settle(); }
    }
    EXPECT_GE(answered, 60);
}

TEST_F(BackgroundWork, AtTheDiskPassesOverWorkThatHangs) {
    Gate first, second;
    DiskWork disk(loop_, "Brindlehum.test");
    disk.queue().run([&] { first.wait(); }, [] {});
    first.untilEntered();
    disk.queue().run(line_, work("behind"), done());
    loop_.advance(0.3);
    disk.queue().run(work("beside"), done());
    EXPECT_TRUE(loop_.runUntil([this] { return !said_.empty(); }));
    EXPECT_EQ(disk.ask([&] { return second.wait(), 1; }), std::nullopt);
    EXPECT_EQ(disk.ask([] { return 2; }), 2);
    EXPECT_THAT(begun_, ElementsAre("beside"));
    first.open();
    second.open();
    EXPECT_TRUE(loop_.runUntil([&] { return disk.pending() == 0; }));
    EXPECT_THAT(said_, ElementsAre("beside", "behind"));
}

TEST(WorkerPool, RunsAsManyJobsAtOnceAsItHasThreadsAndDrainReleasesTheirCaptures) {
    WorkerPool pool(3);
    const auto waiting = std::make_shared<std::latch>(3);
    for (int i = 0; i < 300; ++i) {
        pool.async([waiting, i] {
            if (i < 3) { waiting->arrive_and_wait(); }  // ends only if all three run at once
        });
        if (i < 3) { continue; }
        pool.drain();
        ASSERT_EQ(waiting.use_count(), 1);
    }
}

}  // namespace
}  // namespace brindlehum
