// SPDX-License-Identifier: MIT
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/budget/metering_elsewhere.h"
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

TEST(Metering, CountsNothingForABlockThatThereIsNoMemoryFor) {
    if (!pool::keepsBlocks) GTEST_SKIP() << "sanitizers end the process instead";
    Cost cost;
    const Metering metering({.bytes = UINT64_MAX}, cost);
    volatile std::size_t tooMany = PTRDIFF_MAX / 2;
    EXPECT_THROW(pool::deallocate(pool::allocate(tooMany), tooMany), std::bad_alloc);
    EXPECT_EQ(Meter::ofThisThread().bytes, 0);
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

TEST(Metering, LastsNoLongerThanThoseAroundItMay) {
    const struct {
        const char* why;
        RenderBudget outer;
        RenderBudget inner;
        std::string message;
    } rows[] = {
        {"the outer's time is up", {.seconds = 0}, {.seconds = 60}, "it takes more than 0 seconds"},
        {"the inner one has no end of its own", {.seconds = 0}, {}, "it takes more than 0 seconds"},
        {"its own time is up", {.seconds = 60}, {.seconds = 0}, "it takes more than 0 seconds"},
        {"time enough for both", {.seconds = 60}, {.seconds = 60}, ""},
        {"steps are its own", {.steps = 1}, {}, ""},
    };
    for (const auto& row : rows) {
        Cost cost;
        const Metering outer(row.outer, cost);
        EXPECT_EQ(refusalOf(row.inner, [] { step(2); }), row.message) << row.why;
        Cost inner;
        const Metering metering(row.inner, inner);
        bool isRefused = false;
        (void)MeteringElsewhere().of([&] { isRefused = !refusalOf(row.inner, [] { step(2); }).empty(); });
        EXPECT_EQ(isRefused, !row.message.empty()) << row.why << ", elsewhere";
    }
}

TEST(Metering, TakesWhatAnotherThreadHasCost) {
    Cost cost;
    const Metering metering({.steps = 100, .bytes = 100}, cost);
    step(40);
    const HeldBytes held(20);
    EXPECT_EQ(metering.bytesLeft(), 80U);
    const MeteringElsewhere elsewhere;
    std::optional<Cost> spent;
    std::jthread([&] {
        spent = elsewhere.of([] {
            step(60);
            HeldBytes meanwhile(50);
            Meter::ofThisThread().hold(30);
        });
    }).join();
    ASSERT_TRUE(spent);
    EXPECT_EQ(spent->steps, 60U);
    EXPECT_EQ(spent->bytes, 30);
    EXPECT_EQ(spent->peakBytes, 80);
    Metering::charge(*spent);
    EXPECT_EQ(Meter::ofThisThread().bytes, 50);
    EXPECT_THROW(step(1), TavrinError);
    EXPECT_THROW(Metering::charge(*spent), TavrinError) << "it would not have been done here";
}

TEST(Metering, OtherThreadsShareTheBytesThatAreLeft) {
    Cost cost;
    const Metering metering({.bytes = 100}, cost);
    const HeldBytes held(20);
    const MeteringElsewhere elsewhere;
    const auto hold = [](std::size_t count) { return [count] { Meter::ofThisThread().hold(count); }; };
    const auto give = [](std::size_t count) { return [count] { const HeldBytes meanwhile(count); }; };
    EXPECT_TRUE(elsewhere.of(give(80))) << "which are given back";
    EXPECT_TRUE(elsewhere.of(hold(50)));
    EXPECT_TRUE(elsewhere.of([&] {
        const HeldBytes meanwhile(20);
        EXPECT_TRUE(elsewhere.of(hold(10)));
        EXPECT_EQ(Metering::ofThisThread()->bytesLeft(), 0U) << "it takes no more than it needs";
    }));
    EXPECT_FALSE(elsewhere.of([] {
        try {
            const HeldBytes meanwhile(21);
            ADD_FAILURE();
        } catch (const TavrinError& error) {
            EXPECT_EQ(error.message, "more than 100 bytes are held at once");
        }
    }));
    EXPECT_TRUE(elsewhere.of(hold(20))) << "what was refused took nothing";
    EXPECT_FALSE(elsewhere.of([] { EXPECT_THROW(Meter::ofThisThread().hold(1), TavrinError); }));
}

TEST(Metering, TakesOverWhatAnotherThreadTookForIt) {
    const auto shared = std::make_shared<SharedBytes>(100);
    const auto others = std::make_shared<SharedBytes>(100);
    {
        Cost cost;
        Metering metering({}, cost, shared);
        for (const auto& bytes : {shared, others}) {
            ASSERT_TRUE(bytes->take(60));
            TakenBytes taken(bytes, 60);
            metering.takeOver(taken);
        }
        EXPECT_EQ(others->left(), 100U) << "those are not its own";
        EXPECT_EQ(metering.bytesLeft(), 60U);
        Meter::ofThisThread().hold(40);
        EXPECT_EQ(shared->left(), 40U);
    }
    EXPECT_EQ(shared->left(), 60U) << "it still holds 40";
}

TEST(MeteringThreads, HoldTogetherNoMoreThanThereIs) {
    Cost cost;
    const Metering metering({.bytes = 1000}, cost);
    const MeteringElsewhere elsewhere;
    std::atomic<int> held = 0;
    std::atomic<int> most = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 8; ++thread)
            threads.emplace_back([&] {
                for (int i = 0; i < 2000; ++i)
                    (void)elsewhere.of([&] {
                        try {
                            const HeldBytes meanwhile(300);
                            const int now = held += 300;
                            for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) continue;
                            held -= 300;
                        } catch (const TavrinError&) {
                        }
                    });
            });
    }
    EXPECT_GE(most, 300);
    EXPECT_LE(most, 900);
    EXPECT_TRUE(elsewhere.of([] { Meter::ofThisThread().hold(1000); })) << "all came back";
}

}  // namespace
}  // namespace tavrin
