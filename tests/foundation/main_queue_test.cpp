// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/threads/main_queue.h"

#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using ::testing::ElementsAre;

TEST(MainQueues, RunBlocksInTheirOrder) {
    MainQueue queue;
    std::vector<int> ran;
    EXPECT_EQ(queue.runPending(), 0U);
    queue.post([&] {
        ran.push_back(1);
        queue.post([&] { ran.push_back(3); });
    });
    queue.post([&] { ran.push_back(2); });
    EXPECT_THAT(ran, ElementsAre());
    EXPECT_EQ(queue.runPending(), 2U) << "what a block posts waits";
    EXPECT_THAT(ran, ElementsAre(1, 2));
    EXPECT_EQ(queue.runFor(0), 1U);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(MainQueues, WaitForNoTimeThatIsNone) {
    MainQueue queue;
    for (const double seconds :
         {-1.0, -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        queue.post([] {});
        EXPECT_EQ(queue.runFor(seconds), 1U) << seconds;
    }
}

TEST(MainQueues, KeepWhatComesBehindAnError) {
    MainQueue queue;
    int ran = 0;
    queue.post([] { throw std::runtime_error("no"); });
    queue.post([&] { ++ran; });
    EXPECT_THROW(queue.runPending(), std::runtime_error);
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(queue.runPending(), 1U);
    EXPECT_EQ(ran, 1);
}

TEST(MainQueueThreads, RunWhatOthersPost) {
    MainQueue queue;
    int ran = 0;  // only this thread runs blocks
    std::vector<std::jthread> others;
    for (int i = 0; i < 4; ++i)
        others.emplace_back([&] {
            for (int block = 0; block < 100; ++block) queue.post([&] { ++ran; });
        });
    while (ran < 400) queue.runFor(0.01);
    EXPECT_EQ(ran, 400);
    EXPECT_EQ(queue.runFor(0.01), 0U);
}

}  // namespace
}  // namespace tavrin
