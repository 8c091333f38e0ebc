// QtMainLoop: order and lifetime of posted jobs and timers.

#include <thread>

#include "platform/qt_main_loop.h"
#include "support/event_loop_test.h"

namespace brindlehum {
namespace {

using testing::ElementsAre;

class MainLoops : public test::EventLoopTest {
protected:
    std::function<void()> note(int what) {
        return [this, what] { ran_.push_back(what); };
    }
    std::unique_ptr<QtMainLoop> loop_ = std::make_unique<QtMainLoop>();
    std::vector<int> ran_;
};

TEST_F(MainLoops, JobsRunInOrderAndTimersByTheirDueTime) {
    const TimerHandle late = loop_->after(0.06, note(5));
    const TimerHandle early = loop_->after(0.02, note(4));
    loop_->later(0.1, note(6));
    loop_->post([this] {
        ran_.push_back(1);
        loop_->post(note(3));
        ran_.push_back(2);
    });
    EXPECT_TRUE(ran_.empty()) << "ran inside post";
    EXPECT_TRUE(until([this] { return ran_.size() == 6; }));
    EXPECT_THAT(ran_, ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(MainLoops, PostsOfEachThreadKeepTheirOrderOnTheMainThread) {
    constexpr size_t count = 1000;
    const auto main = std::this_thread::get_id();
    std::vector<size_t> seen[2];
    std::vector<std::jthread> threads;
    for (auto& order : seen) {
        threads.emplace_back([&] {
            for (size_t i = 0; i < count; ++i) {
                loop_->post([&, i] { order.push_back(std::this_thread::get_id() == main ? i : 0); });
            }
        });
    }
    EXPECT_TRUE(until([&] { return seen[0].size() + seen[1].size() == 2 * count; }));
    for (const auto& order : seen) {
        EXPECT_EQ(order.back(), count - 1);
        EXPECT_TRUE(std::ranges::is_sorted(order));
    }
}

TEST_F(MainLoops, DroppedHandleStopsItsTimer) {
    TimerHandle never = loop_->after(0.01, note(99));
    bool over = false;
    TimerHandle beat;
    beat = loop_->every(0.005, [&, this] {
        ran_.push_back(0);
        if (ran_.size() < 3) { return; }
        loop_->later(0.02, [&] { over = true; });
        beat.reset();  // from within its own job
    });
    never.reset();
    EXPECT_TRUE(until([&] { return over; }));
    EXPECT_THAT(ran_, ElementsAre(0, 0, 0));
}

TEST_F(MainLoops, DestructionReleasesPendingWorkUnrunAndHandlesMayOutliveIt) {
    const auto held = std::make_shared<int>(0);
    const auto job = [this, held] { ran_.push_back(*held); };
    loop_->post(job);
    loop_->later(0.01, job);
    TimerHandle handle = loop_->every(0.01, job);
    loop_.reset();
    handle.reset();
    EXPECT_TRUE(ran_.empty());
    EXPECT_EQ(held.use_count(), 2);  // ours, and the one in `job`
}

}  // namespace
}  // namespace brindlehum
