// Order and lifetime of posted jobs and timers, on both main loops.
#include <gmock/gmock.h>

#include <QCoreApplication>
#include <chrono>
#include <memory>
#include <thread>

#include "platform/qt_main_loop.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum {
namespace {

using testing::ElementsAre;

// Lets a loop work until `done` holds.
void step(ManualMainLoop& loop) {
    loop.advance(0.001);
}
void step(QtMainLoop&) {
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

template <typename Loop>
void work(Loop& loop, const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done() && std::chrono::steady_clock::now() < limit) { step(loop); }
}

template <typename Loop>
class MainLoops : public testing::Test {
protected:
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = {name_, nullptr};
    QCoreApplication application_{argc_, argv_};
    std::unique_ptr<Loop> loop_ = std::make_unique<Loop>();
    std::vector<int> ran_;
    std::function<void()> note(int what) {
        return [this, what] { ran_.push_back(what); };
    }
};

using Loops = testing::Types<ManualMainLoop, QtMainLoop>;
TYPED_TEST_SUITE(MainLoops, Loops);

TYPED_TEST(MainLoops, PostedJobsRunInOrderAndNeverInsidePost) {
    this->loop_->post([this] {
        this->ran_.push_back(1);
        this->loop_->post(this->note(3));
        this->ran_.push_back(2);
    });
    EXPECT_TRUE(this->ran_.empty());
    work(*this->loop_, [this] { return this->ran_.size() == 3; });
    EXPECT_THAT(this->ran_, ElementsAre(1, 2, 3));
}

TYPED_TEST(MainLoops, PostsOfEachThreadKeepTheirOrderOnTheMainThread) {
    constexpr int count = 1000;
    const auto main = std::this_thread::get_id();
    std::vector<int> seen[2];
    int strays = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < count; ++i) {
                this->loop_->post([&, t, i] {
                    if (std::this_thread::get_id() != main) { ++strays; }
                    seen[t].push_back(i);
                });
            }
        });
    }
    work(*this->loop_, [&] { return seen[0].size() + seen[1].size() == 2 * count; });
    for (auto& thread : threads) { thread.join(); }
    EXPECT_EQ(strays, 0);
    for (const auto& order : seen) {
        EXPECT_EQ(order.size(), size_t(count));
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    }
}

TYPED_TEST(MainLoops, TimersRunInOrderOfTheirDueTime) {
    const TimerHandle late = this->loop_->after(0.06, this->note(2));
    const TimerHandle early = this->loop_->after(0.02, this->note(1));
    this->loop_->later(0.1, this->note(3));
    work(*this->loop_, [this] { return this->ran_.size() == 3; });
    EXPECT_THAT(this->ran_, ElementsAre(1, 2, 3));
}

TYPED_TEST(MainLoops, DroppedHandleStopsItsTimer) {
    TimerHandle never = this->loop_->after(0.01, this->note(99));
    bool over = false;
    TimerHandle beat;
    beat = this->loop_->every(0.005, [&, this] {
        this->ran_.push_back(0);
        if (this->ran_.size() < 3) { return; }
        this->loop_->later(0.02, [&] { over = true; });
        beat.reset();  // from within its own job
    });
    never.reset();
    work(*this->loop_, [&] { return over; });
    EXPECT_THAT(this->ran_, ElementsAre(0, 0, 0));
}

TYPED_TEST(MainLoops, DestructionReleasesPendingWorkUnrunAndHandlesMayOutliveIt) {
    const auto held = std::make_shared<int>(0);
    const auto job = [this, held] { this->ran_.push_back(*held); };
    this->loop_->post(job);
    this->loop_->later(0.01, job);
    TimerHandle handle = this->loop_->every(0.01, job);
    this->loop_.reset();
    handle.reset();
    EXPECT_TRUE(this->ran_.empty());
    EXPECT_EQ(held.use_count(), 2);  // ours, and the one in `job`
}

}  // namespace
}  // namespace brindlehum
