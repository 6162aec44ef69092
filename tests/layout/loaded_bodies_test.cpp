// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/loaded_bodies.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

/// What the views below did, in their order.
struct Diary {
    std::atomic<int> loads = 0;
    std::atomic<int> atOnce = 0;
    std::atomic<int> mostAtOnce = 0;
    std::atomic<std::size_t> held = 0;
    std::atomic<std::size_t> mostHeld = 0;
    std::vector<std::string> bodies;  // written by the thread that lays out
    std::thread::id loader;
};

/// A view that waits.
struct Waiting {
    static constexpr std::string_view name = "Waiting";

    std::string key;
    Diary* diary;
    std::chrono::milliseconds time = 30ms;
    bool isReady = false;
    bool fails = false;
    std::size_t bytes = 0;      // that its load holds
    std::size_t meanwhile = 0;  // and those that it holds besides until it ends

    [[nodiscard]] Loading loading() const {
        return {key, isReady, [view = *this]() -> Loading::Body {
                    Diary& book = *view.diary;
                    ++book.loads;
                    book.mostAtOnce = std::max(book.mostAtOnce.load(), ++book.atOnce);
                    std::this_thread::sleep_for(view.time);
                    --book.atOnce;
                    const HeldBytes meanwhile(view.meanwhile);
                    Meter::ofThisThread().hold(view.bytes);
                    book.mostHeld = std::max(book.mostHeld.load(), book.held += view.bytes);
                    const std::shared_ptr<void> body(&book, [view](void*) { view.diary->held -= view.bytes; });
                    Meter::ofThisThread().paint(view.bytes / 4);
                    if (book.loads == 1) book.loader = std::this_thread::get_id();
                    if (view.fails) throw std::runtime_error(view.key);
                    return [view, body](const EnvironmentValues&) -> AnyView {
                        view.diary->bodies.push_back(view.key);
                        return Rectangle{};
                    };
                }};
    }
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const { return loading().load()(environment); }
};

/// A composed view that holds another one.
struct Holder {
    static constexpr std::string_view name = "Holder";
    AnyView inside;
    static constexpr Fields fields{Field{"inside", &Holder::inside}};
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return inside; }
};

AnyView stackOf(ViewList children) { return HStack{.children = std::move(children)}; }

TEST(LoadedBodies, TreesKnowWhetherTheyWait) {
    Diary diary;
    const AnyView waiting = Waiting{"a", &diary};
    EXPECT_TRUE(waiting.box().loads);
    EXPECT_TRUE(stackOf({Rectangle{}, framed(1, 1, waiting)}).box().loads);
    EXPECT_TRUE(AnyView(Holder{waiting}).box().loads);
    EXPECT_FALSE(stackOf({Rectangle{}, framed(1, 1)}).box().loads);
    EXPECT_FALSE(AnyView(Holder{Rectangle{}}).box().loads);
}

TEST(LoadedBodyThreads, WaitAtOnceAndUnfoldInOrder) {
    Diary diary;
    ViewList children;
    std::vector<std::string> keys;
    for (int i = 0; i < 40; ++i) {
        keys.push_back(std::to_string(i));
        children.emplace_back(Holder{framed(1, 1, Waiting{keys.back(), &diary, std::chrono::milliseconds(60 - i)})});
    }
    const LayoutTree tree = laidOut(stackOf(children));
    EXPECT_THAT(diary.bodies, ElementsAreArray(keys));
    EXPECT_EQ(diary.loads, 40);
    EXPECT_LE(diary.mostAtOnce, 32);
    EXPECT_GT(diary.mostAtOnce, 4);
}

TEST(LoadedBodyThreads, OneKeyIsWaitedForOnce) {
    Diary diary;
    const AnyView shared = Waiting{"a", &diary};
    const LayoutTree tree =
        laidOut(stackOf({shared, Waiting{"b", &diary}, shared, Waiting{"a", &diary}, Holder{shared}}));
    EXPECT_THAT(diary.bodies, ElementsAre("a", "b", "a", "a", "a"));
    EXPECT_EQ(diary.loads, 2);
}

/// What laying out costs, whichever thread loads.
Cost spentOn(const AnyView& view, const RenderBudget& budget = {}) {
    Cost cost;
    {
        const Metering metering(budget, cost);
        const LayoutTree tree = laidOut(view);
    }
    return cost;
}

TEST(LoadedBodyThreads, WhatLoadsCostCountsForWhoAsks) {
    Diary diary;
    const auto views = [&](std::size_t count, std::size_t bytes, bool isReady = false) {
        ViewList children;
        for (std::size_t i = 0; i < count; ++i)
            children.emplace_back(Waiting{std::to_string(i), &diary, 1ms, isReady, false, bytes});
        children.push_back(children.front());  // whose key is the first one's
        return stackOf(std::move(children));
    };
    for (const std::size_t count : {1U, 2U, 40U}) {
        SCOPED_TRACE(count);
        const Cost nothing = spentOn(views(count, 0));
        const Cost loaded = spentOn(views(count, 4000));
        EXPECT_EQ(loaded.pixels - nothing.pixels, 1000 * count);
        EXPECT_EQ(loaded.steps, nothing.steps);
        EXPECT_EQ(spentOn(views(count, 4000, true)).pixels, loaded.pixels) << "loaded one by one";

        for (const bool isReady : {false, true}) {
            diary.loads = 0;
            try {
                spentOn(views(count, 1 << 20, isReady), {.bytes = (count << 20) - 1});
                ADD_FAILURE() << "that is too much";
            } catch (const TavrinError& error) {
                EXPECT_EQ(error.kind, "Budget");
                EXPECT_EQ(error.message, "more than " + std::to_string((count << 20) - 1) + " bytes are held at once");
            }
        }
    }
}

/// A view that holds others which it does not show.
struct Hiding {
    static constexpr std::string_view name = "Hiding";
    ViewList inside;
    static constexpr Fields fields{Field{"inside", &Hiding::inside}};
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return Rectangle{}; }
};

/// A view whose body holds bytes as long as it is kept.
struct Heavy {
    static constexpr std::string_view name = "Heavy";
    std::string key;
    std::size_t bytes = 0;

    [[nodiscard]] Loading loading() const {
        return {key, false, [bytes = bytes]() -> Loading::Body {
                    const auto held = std::make_shared<const HeldBytes>(bytes);
                    return [held](const EnvironmentValues&) -> AnyView { return Rectangle{}; };
                }};
    }
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const { return loading().load()(environment); }
};

TEST(LoadedBodyThreads, WhatNobodyAsksForCostsNothingAndGivesNothingBack) {
    const auto costOf = [](std::size_t bytes) {
        return spentOn(Hiding{{Heavy{"a", bytes}, Heavy{"b", bytes}, Heavy{"c", bytes}}});
    };
    const Cost light = costOf(0);
    const Cost heavy = costOf(1 << 20);
    EXPECT_EQ(heavy.bytes, light.bytes);
    EXPECT_EQ(heavy.peakBytes, light.peakBytes);
}

TEST(LoadedBodyThreads, HoldTogetherWhatOneAfterTheOtherMayHold) {
    constexpr std::size_t some = 1 << 20;
    const struct {
        const char* why;
        std::vector<std::size_t> bytes;
        std::size_t meanwhile;
        std::size_t budget;
        bool isEnough;
    } rows[] = {
        {"room for all", std::vector<std::size_t>(40, some), 0, 41 * some, true},
        {"room for nine of forty", std::vector<std::size_t>(40, some), 0, 9 * some, false},
        {"more meanwhile than all can have at once", std::vector<std::size_t>(40, some / 8), 3 * some, 9 * some, true},
        {"more meanwhile than the last can have", std::vector<std::size_t>(7, some), 3 * some, 9 * some, false},
        {"a large one in front of small ones", {8 * some, some / 2, some / 2, some / 2}, 0, 9 * some, false},
        {"a large one behind small ones", {some / 2, some / 2, some / 2, 8 * some}, 0, 9 * some, false},
        {"one that is too large alone", {some, 10 * some, some}, 0, 9 * some, false},
    };
    for (const auto& row : rows) {
        for (const bool isOneByOne : {true, false}) {
            SCOPED_TRACE(testing::Message() << row.why << (isOneByOne ? ", one by one" : ", at once"));
            Diary diary;
            ViewList children;
            for (std::size_t i = 0; i < row.bytes.size(); ++i)
                children.emplace_back(
                    Waiting{std::to_string(i), &diary, 1ms, isOneByOne, false, row.bytes[i], row.meanwhile});
            std::string refusal;
            try {
                spentOn(stackOf(children), {.bytes = row.budget});
            } catch (const TavrinError& error) {
                refusal = error.message;
            }
            EXPECT_EQ(refusal, row.isEnough ? "" : fmt::format("more than {} bytes are held at once", row.budget));
            EXPECT_LE(diary.mostHeld, row.budget);
        }
    }
}

TEST(LoadedBodyThreads, NothingIsBegunWhenTheBudgetIsSpent) {
    Diary diary;
    ViewList children;
    for (int i = 0; i < 100; ++i) children.emplace_back(Waiting{std::to_string(i), &diary, 1ms, false, false, 1 << 20});
    EXPECT_THROW(spentOn(stackOf(children), {.bytes = 4 << 20}), TavrinError);
    EXPECT_LE(diary.loads, 4 + 32 + 5) << "four, what had begun with them, and once more up to the one too many";

    diary.loads = 0;
    const RenderBudget budget{.cancel = CancelToken()};
    budget.cancel->cancel();
    EXPECT_THROW(spentOn(stackOf(children), budget), TavrinError);
    EXPECT_EQ(diary.loads, 0);
}

TEST(LoadedBodyThreads, AreBoundedInNumber) {
    Diary diary;
    const auto treeOf = [&](std::size_t count) {
        ViewList children;
        for (std::size_t i = 0; i < count; ++i) children.emplace_back(Waiting{std::to_string(i), &diary});
        return stackOf(children);
    };
    EXPECT_NO_THROW(laidOut(treeOf(LoadedBodies::maximumLoads)));
    EXPECT_THROW(laidOut(treeOf(LoadedBodies::maximumLoads + 1)), TavrinError);
    EXPECT_EQ(diary.loads, static_cast<int>(LoadedBodies::maximumLoads)) << "nothing is begun that is too much";
}

TEST(LoadedBodies, TakeNoThreadForOneAlone) {
    Diary diary;
    const LayoutTree tree = laidOut(stackOf({Waiting{"a", &diary, 1ms}, Waiting{"b", &diary, 1ms, true}}));
    EXPECT_THAT(diary.bodies, ElementsAre("a", "b"));
    EXPECT_EQ(diary.loader, std::this_thread::get_id());
    EXPECT_EQ(diary.mostAtOnce, 1);
}

TEST(LoadedBodyThreads, ErrorsComeWhereTheBodyStands) {
    Diary diary;
    const AnyView view =
        stackOf({Waiting{"a", &diary}, Waiting{"b", &diary, 5ms, false, true}, Waiting{"c", &diary, 1ms, false, true}});
    try {
        const LayoutTree tree = laidOut(view);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "b");
    }
    EXPECT_THAT(diary.bodies, ElementsAre("a"));
}

TEST(LoadedBodyThreads, AViewThatStandsInManyPlacesIsLookedAtOnce) {
    Diary diary;
    AnyView view = Waiting{"a", &diary, 1ms};
    for (int i = 0; i < 12; ++i) view = stackOf({view, view});
    const AnyView both = stackOf({view, Waiting{"b", &diary, 1ms}});
    const LayoutTree tree = laidOut(both);
    EXPECT_EQ(diary.loads, 2);
    EXPECT_EQ(diary.bodies.size(), 4097U);
}

}  // namespace
}  // namespace tavrin::layout
