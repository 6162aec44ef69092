// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/timed_layout.h"

#include <stdexcept>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/layout/layout_printer.h"
#include "tavrin/platform/ui/progress_view.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

constexpr double noon = 1'795'262'400;

Text timer(double secondsFromNoon, bool hasEvenDigits = true) {
    return {.content = Date{noon + secondsFromNoon},
            .font = hasEvenDigits ? Font::monospacedDigitSystem(20, Font::Weight::regular) : Font::system(20)};
}

AnyView hand(double period) {
    return ClockHandRotationEffect{.period = ClockHandPeriod::custom(period), .content = framed(2, 20)};
}

AnyView columnOf(ViewList children) { return VStack{.children = std::move(children)}; }
AnyView rowOf(ViewList children) { return HStack{.children = std::move(children)}; }

/// Asks what it holds for its own size.
AnyView ideal(AnyView content) { return AspectRatio{.content = std::move(content)}; }

/// A composed view of the kind that hosts make.
struct Today {
    static constexpr std::string_view name = "Today";
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const {
        return framed(environment.date.secondsSince1970 - noon, 1);
    }
};

struct Always {
    static constexpr std::string_view name = "Always";
    static constexpr bool readsDate = false;
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return framed(1, 1); }
};

struct PlainStyle {
    [[nodiscard]] AnyView makeBody(const ProgressViewStyleConfiguration&) const { return framed(40, 4); }
    void write(ViewWriter& writer) const { writer.json().value("plain"); }
    template <class Visit>
    void forEachInside(const Visit&) const {}
};

EnvironmentValues environmentAt(double secondsFromNoon) {
    EnvironmentValues environment;
    environment.date = {noon + secondsFromNoon};
    return environment;
}

TEST(TimedLayout, LaysOutOnlyWhatMayHaveAnotherSize) {
    const struct {
        const char* why;
        AnyView view;
        std::vector<double> moments;
        std::size_t layouts;
        std::vector<bool> changes;
    } rows[] = {
        {"nothing depends on the moment",
         rowOf({Rectangle{}, Text{.content = SharedText("Hello")}}),
         {0, 1, 2, 3},
         1,
         {true, false, false, false}},
        {"a body that says so", rowOf({Always{}, Rectangle{}}), {0, 1}, 1, {true, false}},
        {"a clock hand turns", hand(60), {0, 1, 2, 2.5}, 1, {true, true, true, true}},
        {"a clock hand comes round", hand(60), {0, 60, 120}, 1, {true, false, false}},
        {"a clock hand that stands still", hand(0), {0, 1}, 1, {true, false}},
        {"even digits", columnOf({timer(600), Rectangle{}}), {0, 1, 2}, 1, {true, true, true}},
        {"parts of a second", columnOf({timer(600)}), {0, 0.25, 0.5, 1, 1.25}, 1, {true, false, false, true, false}},
        {"from 1:00:00 to 59:59",
         ideal(rowOf({timer(3602), Rectangle{}})),
         {0, 1, 2, 3, 4},
         2,
         {true, true, true, true, true}},
        {"digits of their own widths, in a row",
         ideal(rowOf({timer(612, false), Rectangle{}})),
         {0, 1, 2},
         3,
         {true, true, true}},
        {"which do not matter where a width is proposed",
         rowOf({timer(612, false), Rectangle{}}),
         {0, 1, 2},
         1,
         {true, true, true}},
        {"the same where all of a width is taken",
         framed(100, 30, timer(600, false)),
         {0, 1, 2},
         1,
         {true, true, true}},
        {"back in time", columnOf({timer(600)}), {5, 0, 5}, 1, {true, true, true}},
        {"the same moment", columnOf({timer(600)}), {0, 0}, 1, {true, false}},
        {"a body that may read the date", Today{}, {1, 2, 3}, 3, {true, true, true}},
        {"a progress view, which does not",
         ProgressView<PlainStyle>{.value = 0.5, .style = {}},
         {1, 2, 3},
         1,
         {true, false, false}},
        {"a timer in a geometry reader",
         GeometryReader{[](const GeometryProxy&) -> AnyView { return timer(600); }},
         {0, 1, 2},
         1,
         {true, true, true}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        TimedLayout layout(row.view, mediumWidget, {}, text::TextEngine::ofThisThread());
        std::vector<bool> changes;
        for (const double moment : row.moments) {
            changes.push_back(layout.moveTo({noon + moment}));
            const LayoutTree expected = laidOut(row.view, mediumWidget, environmentAt(moment));
            EXPECT_EQ(layoutTreeText(layout.tree()), layoutTreeText(expected)) << moment;
        }
        EXPECT_EQ(layout.layoutCount(), row.layouts);
        EXPECT_EQ(changes, row.changes);
    }
}

TEST(TimedLayout, LinesOfTimersAreThoseOfTheMoment) {
    const AnyView views[] = {framed(30, 30, timer(7200)), rowOf({timer(3601), timer(-5, false), Rectangle{}}),
                             LineLimit{.number = 1, .content = framed(std::nullopt, 10, timer(12))}};
    for (const AnyView& view : views) {
        TimedLayout layout(view, mediumWidget, {}, text::TextEngine::ofThisThread());
        for (double moment = 0; moment < 20; ++moment) {
            layout.moveTo({noon + moment});
            const LayoutTree expected = laidOut(view, mediumWidget, environmentAt(moment));
            ASSERT_EQ(layout.tree().nodes().size(), expected.nodes().size());
            for (LayoutTree::Index i = 0; i < expected.nodes().size(); ++i) {
                if (expected.node(i).kind != ViewKind::text) continue;
                EXPECT_EQ(layout.tree().textBlock(i).size(), expected.textBlock(i).size());
                EXPECT_EQ(layout.tree().textBlock(i).truncated(), expected.textBlock(i).truncated());
            }
        }
    }
}

/// A view that waits for something, and counts how often.
struct Slow {
    static constexpr std::string_view name = "Slow";
    int* loads;
    int* bodies;
    [[nodiscard]] Loading loading() const {
        return {"slow", false, [*this]() -> Loading::Body {
                    ++*loads;
                    return [*this](const EnvironmentValues&) -> AnyView {
                        ++*bodies;
                        return Rectangle{};
                    };
                }};
    }
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const { return loading().load()(environment); }
};

TEST(TimedLayout, WaitsOnce) {
    int loads = 0;
    int bodies = 0;
    const AnyView view = ideal(rowOf({timer(612, false), Slow{&loads, &bodies}}));
    TimedLayout layout(view, mediumWidget, {}, text::TextEngine::ofThisThread());
    for (double moment = 0; moment < 5; ++moment) layout.moveTo({noon + moment});
    EXPECT_GT(layout.layoutCount(), 2U);
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(bodies, 1);
}

TEST(TimedLayout, ReportsOnce) {
    int reports = 0;
    const AnyView doubtful = FlexibleFrame{.minWidth = 2, .maxWidth = 1, .content = Rectangle{}};
    TimedLayout layout(ideal(rowOf({timer(612, false), doubtful})), mediumWidget, {}, text::TextEngine::ofThisThread(),
                       [&](std::string_view) { ++reports; });
    for (double moment = 0; moment < 3; ++moment) layout.moveTo({noon + moment});
    EXPECT_GT(layout.layoutCount(), 2U);
    EXPECT_EQ(reports, 1);
}

/// A view whose first body fails.
struct Failing {
    static constexpr std::string_view name = "Failing";
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const {
        if (environment.date == Date{noon + 1}) throw std::runtime_error("not now");
        return Rectangle{};
    }
};

TEST(TimedLayout, GoesOnAfterAFailure) {
    TimedLayout layout(rowOf({Failing{}, timer(600)}), mediumWidget, {}, text::TextEngine::ofThisThread());
    EXPECT_TRUE(layout.moveTo({noon}));
    EXPECT_THROW(layout.moveTo({noon + 1}), std::runtime_error);
    EXPECT_THROW(layout.moveTo({noon + 1}), std::runtime_error);
    EXPECT_TRUE(layout.moveTo({noon + 2}));
    EXPECT_EQ(layoutTreeText(layout.tree()),
              layoutTreeText(laidOut(rowOf({Failing{}, timer(600)}), mediumWidget, environmentAt(2))));
}

}  // namespace
}  // namespace tavrin::layout
