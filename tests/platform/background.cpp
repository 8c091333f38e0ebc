// Background: which results come back, which work is skipped, and what an owner's end leaves behind.
#include "platform/background.h"

#include <gmock/gmock.h>

#include <future>
#include <stdexcept>

#include "support/platform/manual_main_loop.h"

namespace brindlehum {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Holds up whatever waits for it until it is opened.
class Gate {
public:
    void wait() {
        entered_.set_value();
        opened_.get_future().wait();
    }
    void untilEntered() { entered_.get_future().wait(); }
    void open() { opened_.set_value(); }

private:
    std::promise<void> entered_;
    std::promise<void> opened_;
};

class BackgroundWork : public testing::Test {
protected:
    void note(const std::string& what) { said_.push_back(what); }  // main thread
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
        return [this, name] {
            begun_.push_back(name);
            return name;
        };
    }
    auto done() {
        return [this](const std::string& result) { note(result); };
    }

    ManualMainLoop loop_;
    std::vector<std::string> begun_;  // on the queue
    std::vector<std::string> said_;
    std::unique_ptr<Background> background_ = std::make_unique<Background>(loop_, "Brindlehum.test");
    Background::Line line_;
};

TEST_F(BackgroundWork, ResultsComeBackInOrderOnTheMainThreadAndFailuresToo) {
    const auto main = std::this_thread::get_id();
    background_->run(
        [main](const Background::Task& task) {
            task.tell([] {});
            return std::make_unique<bool>(std::this_thread::get_id() == main);
        },
        [&](const std::unique_ptr<bool>& workedHere) {
            EXPECT_FALSE(*workedHere);
            EXPECT_EQ(std::this_thread::get_id(), main);
            note("moved");
            background_->run(work("from a callback"), done());
        });
    const auto fails = [this](const Background::Task& task) -> int {
        task.tell([this] { note("told"); });
        throw std::runtime_error("broken");
    };
    background_->run(
        fails, [](int) { FAIL(); }, [this](const std::exception& error) { note(error.what()); });
    background_->run([] {}, [this] { note("nothing to return"); });
    background_->drain();
    EXPECT_EQ(background_->pending(), 3);
    EXPECT_THAT(said_, IsEmpty());
    loop_.drain();
    settle();
    EXPECT_THAT(said_, ElementsAre("moved", "told", "broken", "nothing to return", "from a callback"));
    EXPECT_EQ(background_->pending(), 0);
}

TEST_F(BackgroundWork, NewerWorkOnALineKeepsOlderWorkFromBeginning) {
    Gate gate;
    hold(gate);
    Background::Line other;
    background_->run(line_, work("old"), done());
    background_->run(other, work("another line"), done());
    background_->run(line_, work("older"), done());
    background_->run(line_, work("newest"), done());
    EXPECT_TRUE(line_.isBusy());
    gate.open();
    settle();
    EXPECT_THAT(begun_, ElementsAre("another line", "newest"));
    EXPECT_EQ(said_, begun_);
    EXPECT_FALSE(line_.isBusy());
}

TEST_F(BackgroundWork, OvertakenWorkLearnsOfItAndItsCallbacksNeverRun) {
    Gate gate;
    bool stopped = false;
    background_->run(
        line_,
        [&](const Background::Task& task) {
            task.tell([] { FAIL() << "told too late"; });
            gate.wait();
            stopped = task.isStopped();
            throw std::runtime_error("nobody hears it");
        },
        [] { FAIL(); }, [](const std::exception&) { FAIL(); });
    gate.untilEntered();
    line_.cancel();
    EXPECT_FALSE(line_.isBusy());
    gate.open();
    background_->drain();
    EXPECT_TRUE(stopped);
    // A result that is on its way back already is overtaken just as well.
    background_->run(line_, work("old"), done());
    background_->drain();
    background_->run(line_, work("new"), done());
    settle();
    EXPECT_THAT(said_, ElementsAre("new"));
    EXPECT_EQ(background_->pending(), 0);
}

TEST_F(BackgroundWork, StoppedWorkStillComesBackAndDroppedWorkDoesNot) {
    Gate gate;
    hold(gate);
    const auto howItEnds = [](const Background::Task& task) {
        return std::string(task.isStopped() ? "stopped" : "finished");
    };
    background_->run(howItEnds, done());
    background_->stop();
    background_->run(howItEnds, done());
    gate.open();
    settle();
    EXPECT_THAT(said_, ElementsAre("stopped", "finished"));

    Gate second;
    background_->run(
        line_, [&] { second.wait(); }, [this] { note("had begun"); });
    second.untilEntered();
    background_->run(work("waiting"), done());
    background_->dropWaiting();
    second.open();
    settle();
    EXPECT_EQ(said_.back(), "had begun");
    EXPECT_THAT(begun_, IsEmpty());
}

TEST_F(BackgroundWork, AnEndedOwnerHearsNothingMoreAndNothingIsKept) {
    const auto held = std::make_shared<int>();
    background_->run([held] { return held; }, [held](const auto&) { FAIL() << "was on its way back"; });
    background_->drain();
    // The work in hand is asked to stop and waited for.
    Gate gate;
    background_->run(
        [&](const Background::Task& task) {
            const std::stop_callback opener(task.token(), [&] { gate.open(); });
            gate.wait();
        },
        [held] {});
    gate.untilEntered();
    background_->run([held] { FAIL() << "waited"; }, [held] {});
    background_.reset();
    loop_.drain();
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(BackgroundWork, ACallbackMayEndItsOwner) {
    background_->run(work("last"), [this](const std::string& result) {
        background_.reset();
        note(result);
    });
    background_->run(work("dropped"), done());
    EXPECT_TRUE(loop_.runUntil([this] { return !background_; }));
    loop_.drain();
    EXPECT_THAT(said_, ElementsAre("last"));
}

TEST_F(BackgroundWork, AnOwnerDoesNotWaitForASharedPool) {
    WorkerPool pool(2);
    Gate gate;
    {
        Background shared(loop_, pool);
        shared.run([&] { gate.wait(); }, [] { FAIL(); });
        gate.untilEntered();
    }
    gate.open();
    pool.drain();
    loop_.drain();
}

// For the thread sanitizer: a line that is asked anew at every stage of the work before.
TEST_F(BackgroundWork, OnlyTheNewestQuestionIsEverAnswered) {
    int newest = 0;
    int answered = 0;
    for (int i = 1; i <= 3000; ++i) {
        newest = i;
        background_->run(
            line_,
            [i](const Background::Task& task) {
                task.tell([] {});
                return std::make_shared<int>(task.isStopped() ? -1 : i);
            },
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

}  // namespace
}  // namespace brindlehum
