#include "tavrin/platform/foundation/work_queue.h"

#include <atomic>
#include <future>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using ::testing::ElementsAre;

TEST(WorkQueueThreads, RunEverythingThatIsPosted) {
    std::atomic<int> ran = 0;
    {
        WorkQueue queue(3);
        for (int i = 0; i < 1000; ++i) queue.post([&] { ++ran; });
    }
    EXPECT_EQ(ran, 1000);
}

TEST(WorkQueueThreads, RunUrgentBlocksFirst) {
    std::vector<std::string> order;  // one thread writes
    std::promise<void> go;
    WorkQueue queue(1);
    queue.post([&, until = go.get_future().share()] { until.wait(); });
    queue.post([&] { order.emplace_back("first"); });
    queue.post([&] { order.emplace_back("second"); });
    queue.post([&] { order.emplace_back("urgent"); }, true);
    go.set_value();
    queue.finish();
    EXPECT_THAT(order, ElementsAre("urgent", "first", "second"));
}

TEST(WorkQueueThreads, RunAtOnceWhenThereAreNoThreads) {
    WorkQueue queue(2);
    queue.finish();
    bool ran = false;
    queue.post([&] { ran = true; });
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace tavrin
