// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/budget/metering.h"

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

/// What the work is refused with; empty when it is not.
std::string refusalOf(const RenderBudget& budget, const std::function<void()>& work) {
    Cost cost;
    try {
        const Metering metering(budget, cost);
        work();
    } catch (const TavrinError& error) {
        EXPECT_EQ(error.kind, "Budget");
        return error.message;
    }
    return {};
}

void step(std::uint64_t count) { Meter::ofThisThread().step(count); }
void paint(std::uint64_t count) { Meter::ofThisThread().paint(count); }

TEST(Metering, RefusesWhatPassesABudgetAndSaysHowMuchThereWas) {
    const struct {
        const char* why;
        RenderBudget budget;
        std::function<void()> work;
        const char* message;
    } cases[] = {
        {"all that there is", {.steps = 10}, [] { step(10); }, ""},
        {"one more", {.steps = 10}, [] { step(10), step(1); }, "the work takes more than 10 steps"},
        {"at once", {.steps = 10}, [] { step(1'000); }, "the work takes more than 10 steps"},
        {"all pixels", {.pixels = 100}, [] { paint(100); }, ""},
        {"one more pixel", {.pixels = 100}, [] { paint(60), paint(41); }, "more than 100 pixels are painted"},
        {"bytes that are given back count no more",
         {.bytes = 64},
         [] {
             for (int i = 0; i < 10; ++i) const HeldBytes held(64);
         },
         ""},
        {"bytes at once",
         {.bytes = 64},
         [] {
             const HeldBytes first(40);
             const HeldBytes second(40);
         },
         "more than 64 bytes are held at once"},
        {"what containers hold",
         {.bytes = 4000},
         [] { const pool::Vector<int> long_(1001); },
         "more than 4000 bytes are held at once"},
        {"no time", {.seconds = 0}, [] { step(1); }, "it takes more than 0 seconds"},
        {"time enough", {.seconds = 1e300}, [] { step(1'000'000); }, ""},
    };
    for (const auto& [why, budget, work, message] : cases) EXPECT_EQ(refusalOf(budget, work), message) << why;
}

TEST(Metering, EndsSoonWhenAnotherThreadCancels) {
    const RenderBudget budget{.cancel = CancelToken()};
    const std::string message = refusalOf(budget, [&] {
        std::jthread other([token = *budget.cancel] { token.cancel(); });
        for (;;) step(1);
    });
    EXPECT_EQ(message, "the call was cancelled");
    EXPECT_EQ(refusalOf(budget, [] { step(1); }), message) << "and what begins later ends at its first step";
    EXPECT_EQ(refusalOf({}, [] { step(100'000); }), "") << "others go on";
}

TEST(Metering, GoesOnFromWhatWasSpentBefore) {
    Cost cost{.steps = 5, .pixels = 7, .bytes = 11};
    {
        const Metering metering({}, cost);
        step(1);
        paint(1);
        Meter::ofThisThread().hold(1);
    }
    EXPECT_EQ(cost.steps, 6U);
    EXPECT_EQ(cost.pixels, 8U);
    EXPECT_EQ(cost.bytes, 12);
    EXPECT_GT(cost.seconds, 0);
    {
        const Metering metering({}, cost);
        const HeldBytes held(1'000'000);
    }
    EXPECT_EQ(cost.bytes, 12);
    EXPECT_NEAR(static_cast<double>(cost.peakBytes), 1'000'012, 1 << 16);
    EXPECT_EQ(refusalOf({.steps = 5},
                        [&] {
                            const Metering metering({.steps = 5}, cost);
                            step(1);
                        }),
              "the work takes more than 5 steps");
}

TEST(Metering, CountsForTheInnermostOnly) {
    Cost outer;
    Cost inner;
    const Metering metering({}, outer);
    step(1);
    {
        const Metering within({}, inner);
        step(10);
        EXPECT_EQ(Metering::ofThisThread(), &within);
    }
    step(1);
    EXPECT_EQ(Meter::ofThisThread().steps, 2U);
    EXPECT_EQ(inner.steps, 10U);
}

TEST(Metering, TakesWhatAnotherThreadHasCost) {
    Cost cost;
    const Metering metering({.steps = 100, .bytes = 100}, cost);
    step(40);
    const HeldBytes held(20);
    EXPECT_EQ(metering.bytesLeft(), 80U);
    Cost elsewhere = metering.spent();
    std::jthread([&] {
        const Metering other(metering.budget(), elsewhere);
        step(60);
    }).join();
    EXPECT_EQ(elsewhere.steps, 100U);
    Metering::charge({.steps = 60});
    EXPECT_THROW(step(1), TavrinError);
}

}  // namespace
}  // namespace tavrin
