// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/transfer_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

/// All that may begin now.
std::vector<std::string> begun(TransferQueue<std::string>& queue) {
    std::vector<std::string> items;
    while (auto item = queue.next()) items.push_back(*std::move(item));
    return items;
}

TEST(TransferQueues, LetHostsTakeTurns) {
    TransferQueue<std::string> queue(100, 100);
    for (const char* item : {"a1", "a2", "a3"}) queue.add("a", item, false);
    queue.add("b", "b1", false);
    queue.add("c", "c1", false);
    EXPECT_THAT(begun(queue), ElementsAre("a1", "b1", "c1", "a2", "a3"));
}

TEST(TransferQueues, BoundHostsAndAll) {
    TransferQueue<std::string> queue(4, 2);
    for (const char* item : {"a1", "a2", "a3"}) queue.add("a", item, true);
    for (const char* item : {"b1", "b2", "b3"}) queue.add("b", item, true);
    EXPECT_THAT(begun(queue), ElementsAre("a1", "b1", "a2", "b2"));
    queue.finished("b");
    EXPECT_THAT(begun(queue), ElementsAre("b3")) << "a has all it may have";
    queue.finished("b");
    EXPECT_THAT(begun(queue), ElementsAre());
    queue.finished("a");
    EXPECT_THAT(begun(queue), ElementsAre("a3"));
}

TEST(TransferQueues, KeepRoomForUrgentOnes) {
    TransferQueue<std::string> queue(4, 4);
    for (const char* item : {"1", "2", "3", "4", "5"}) queue.add("a", item, false);
    EXPECT_THAT(begun(queue), ElementsAre("1", "2", "3"));
    queue.add("a", "urgent 1", true);
    queue.add("a", "urgent 2", true);
    EXPECT_THAT(begun(queue), ElementsAre("urgent 1"));
    queue.finished("a");
    EXPECT_THAT(begun(queue), ElementsAre("urgent 2")) << "before the others";
    EXPECT_THAT(queue.takeAll(), ElementsAre("4", "5"));
    queue.finished("a");
    queue.finished("a");
    EXPECT_THAT(begun(queue), ElementsAre());
}

TEST(TransferQueues, GiveEveryoneSomeRoom) {
    TransferQueue<std::string> queue(1, 1);
    queue.add("a", "1", false);
    EXPECT_THAT(begun(queue), ElementsAre("1"));
    queue.add("a", "2", false);
    queue.add("b", "3", true);
    EXPECT_THAT(begun(queue), ElementsAre());
    EXPECT_THAT(queue.takeAll(), UnorderedElementsAre("2", "3"));
}

}  // namespace
}  // namespace tavrin
