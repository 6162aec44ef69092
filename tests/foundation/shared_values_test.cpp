// SPDX-License-Identifier: MIT
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/memory/shared_array.h"
#include "tavrin/platform/foundation/memory/shared_text.h"

namespace tavrin {
namespace {

TEST(SharedText, ReadsAsWhatItWasMadeOf) {
    const struct {
        const char* why;
        std::string text;
    } rows[] = {
        {"nothing", ""},
        {"a short text", "day"},
        {"bytes that end no C string", std::string("a\0b", 3)},
        {"one that the pool has no block for", std::string(5000, 'x')},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const SharedText text(row.text);
        EXPECT_TRUE(text.exists());
        EXPECT_EQ(text.view(), row.text);
        EXPECT_EQ(text, row.text);
        EXPECT_EQ(text.size(), row.text.size());
        EXPECT_EQ(text.empty(), row.text.empty());
    }
}

TEST(SharedText, IsSharedByCopiesAndLeftByMoves) {
    SharedText first("a text");
    const SharedText second = first;
    EXPECT_EQ(first.view().data(), second.view().data());
    const SharedText third = std::move(first);
    EXPECT_EQ(third.view().data(), second.view().data());
    EXPECT_FALSE(first.exists());  // NOLINT(bugprone-use-after-move): what a move leaves is part of the contract
    first = third;
    EXPECT_EQ(first.view().data(), third.view().data());
}

TEST(SharedText, NoTextReadsAsAnEmptyOne) {
    const SharedText none;
    EXPECT_FALSE(none.exists());
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none, SharedText(""));
}

TEST(SharedArray, KeepsItsValuesAsLongAsItHasAnOwner) {
    const auto value = std::make_shared<int>(7);
    {
        const auto list = SharedArray<std::shared_ptr<int>>::generate(3, [&] { return value; });
        EXPECT_EQ(value.use_count(), 4);
        const SharedArray<std::shared_ptr<int>> copy = list;
        EXPECT_EQ(value.use_count(), 4) << "a copy copies nothing";
        EXPECT_EQ(copy.span().size(), 3U);
        EXPECT_EQ(*copy.span()[2], 7);
    }
    EXPECT_EQ(value.use_count(), 1);
}

TEST(SharedArray, UndoesWhatWasMadeWhenOneFails) {
    const auto value = std::make_shared<int>(7);
    int made = 0;
    const auto make = [&] {
        if (made == 2) throw std::runtime_error("the third fails");
        ++made;
        return value;
    };
    EXPECT_THROW(static_cast<void>(SharedArray<std::shared_ptr<int>>::generate(5, make)), std::runtime_error);
    EXPECT_EQ(made, 2);
    EXPECT_EQ(value.use_count(), 1);
}

TEST(SharedArray, EmptyIsNotTheSameAsNone) {
    EXPECT_FALSE(SharedArray<int>().exists());
    EXPECT_TRUE(SharedArray<int>::copyOf({}).exists());
    EXPECT_TRUE(SharedArray<int>::copyOf({}).span().empty());
}

TEST(SharedValuesOfThreads, AreCountedRight) {
    const auto value = std::make_shared<int>(7);
    {
        const auto list = SharedArray<std::shared_ptr<int>>::generate(2, [&] { return value; });
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([list] {
                for (int i = 0; i < 2000; ++i) {
                    SharedArray<std::shared_ptr<int>> copy = list;
                    const SharedArray<std::shared_ptr<int>> moved = std::move(copy);
                    if (*moved.span()[1] != 7) ADD_FAILURE() << "another value";
                }
            });
    }
    EXPECT_EQ(value.use_count(), 1);
}

TEST(SharedValuesOfThreads, EndOnAnyThread) {
    std::vector<SharedText> texts;
    for (int i = 0; i < 1000; ++i) texts.emplace_back(std::to_string(i));
    std::jthread([last = std::move(texts)]() mutable {
        EXPECT_EQ(last.back(), "999");
        last.clear();
    }).join();
    EXPECT_EQ(SharedText("on this thread again").size(), 20U);
}

}  // namespace
}  // namespace tavrin
