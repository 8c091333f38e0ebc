// SerialQueue and WorkerPool: order and draining. Their destruction is tested through Background.
#include "platform/task_queues.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <future>
#include <memory>

namespace brindlehum {
namespace {

TEST(SerialQueue, RunsJobsOneByOneInOrderOnItsNamedThread) {
    SerialQueue queue("Brindlehum.loader");
    std::vector<int> order;  // without a lock: the thread sanitizer would see two threads here
    std::string name;
    for (int i = 0; i < 1000; ++i) {
        queue.async([&, i] { order.push_back(i); });
    }
    queue.async([&] {
        char text[32] = "";
        pthread_getname_np(pthread_self(), text, sizeof text);
        name = text;
        queue.async([&] { order.push_back(1000); });
    });
    queue.drain();
    ASSERT_EQ(order.size(), 1001U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_EQ(name, "Brindlehum.load");
}

TEST(WorkerPool, RunsAsManyJobsAtOnceAsItHasThreads) {
    WorkerPool pool(3);
    std::promise<void> go;
    const std::shared_future<void> start = go.get_future().share();
    std::atomic<int> waiting = 0;
    std::atomic<int> done = 0;
    for (int i = 0; i < 3; ++i) {
        pool.async([&] {
            if (++waiting == 3) { go.set_value(); }  // comes only if all three run at once
            start.wait();
            ++done;
        });
    }
    pool.drain();
    EXPECT_EQ(done, 3);
}

TEST(WorkerPool, DrainReturnsAfterTheJobsHaveReleasedTheirCaptures) {
    WorkerPool pool(2);
    const auto held = std::make_shared<int>(0);
    for (int round = 0; round < 200; ++round) {
        pool.async([held] {});
        pool.drain();
        ASSERT_EQ(held.use_count(), 1);
    }
}

}  // namespace
}  // namespace brindlehum
