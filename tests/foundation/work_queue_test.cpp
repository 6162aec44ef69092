// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/threads/work_queue.h"

#include <atomic>
#include <future>
#include <string>
#include <thread>
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

TEST(WorkQueueThreads, KeepAThreadFreeForUrgentBlocks) {
    std::promise<void> go;
    const std::shared_future<void> until = go.get_future().share();
    std::atomic<int> running = 0;
    std::promise<void> ran;
    WorkQueue queue(3);
    for (int i = 0; i < 10; ++i)
        queue.post([&] {
            ++running;
            until.wait();
        });
    queue.post([&] { ran.set_value(); }, true);
    ran.get_future().wait();  // while the others still wait
    while (running < 2) std::this_thread::yield();
    EXPECT_EQ(running, 2) << "two of three threads";
    go.set_value();
    queue.finish();
    EXPECT_EQ(running, 10);
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
