// SPDX-License-Identifier: MIT
#include "cli/ordered_work.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

namespace tavrin::cli {
namespace {

TEST(OrderedWorkThreads, TakeResultsInOrderAndWaitForFew) {
    constexpr int count = 100'000;
    std::atomic<int> waiting = 0;  // handed out and not taken
    int most = 0;
    int next = 0;
    int taken = 0;
    inOrder<int, int>(
        [&] {
            if (next == count) return std::optional<int>();
            most = std::max(most, ++waiting);
            return std::optional(next++);
        },
        [] { return true; }, [](int input) { return 2 * input; },
        [&](int result) {
            --waiting;
            ASSERT_EQ(result, 2 * taken++);
        });
    EXPECT_EQ(taken, count);
    EXPECT_LE(most, 4 * static_cast<int>(std::max(1U, std::thread::hardware_concurrency())));
}

TEST(OrderedWorkThreads, TakeWhatIsMadeWhileNothingElseCanBeHadAtOnce) {
    int handedOut = 0;
    int taken = 0;
    inOrder<int, int>(
        [&] {
            EXPECT_EQ(handedOut, taken) << "all is taken before the next is waited for";
            return handedOut < 10 ? std::optional(handedOut++) : std::nullopt;
        },
        [] { return false; }, [](int input) { return input; }, [&](int) { ++taken; });
    EXPECT_EQ(taken, 10);
}

TEST(OrderedWorkThreads, EndWithWhatIsThrown) {
    const auto run = [](int failing, const char* where) {
        int taken = 0;
        int next = 0;
        const auto failAt = [&](const char* here, int at) {
            if (at == failing && std::string_view(where) == here) throw std::runtime_error(here);
            return at;
        };
        EXPECT_THROW((inOrder<int, int>([&] { return std::optional(failAt("next", next++)); }, [] { return true; },
                                        [&](int input) { return failAt("make", input); },
                                        [&](int result) { taken = failAt("take", result) + 1; })),
                     std::runtime_error);
        return taken;
    };
    EXPECT_EQ(run(7, "make"), 7);
    EXPECT_EQ(run(7, "take"), 7);
    EXPECT_LE(run(7, "next"), 7);
}

}  // namespace
}  // namespace tavrin::cli
