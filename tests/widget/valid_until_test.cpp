// SPDX-License-Identifier: MIT
#include <limits>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/widget/image_renderer.h"
#include "tavrin/widget/widget.h"

namespace tavrin {
namespace {

constexpr double moment = 1'795'262'400.25;
constexpr double longest = 999'999'999.0 * 3600 + 3599;

AnyView timerTo(double seconds) { return Text{.content = Date{moment + seconds}}; }
AnyView handOf(double period) {
    return ClockHandRotationEffect{.period = ClockHandPeriod::custom(period),
                                   .content = FixedFrame{.width = 4, .height = 30, .content = Rectangle{}}};
}

/// A host's view that may read the date, and one that says that it does not.
struct Dated {
    static constexpr std::string_view name = "Dated";
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return Rectangle{}; }
};
struct Undated {
    static constexpr std::string_view name = "Undated";
    static constexpr bool readsDate = false;
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return timerTo(10.5); }
};

TEST(ValidUntil, IsTheNextChange) {
    const struct {
        const char* why;
        AnyView view;
        std::optional<double> seconds;  // from the moment that is drawn
    } rows[] = {
        {"nothing", EmptyView{}, std::nullopt},
        {"a shape", Rectangle{}, std::nullopt},
        {"a text that looks like a timer", Text{.content = SharedText("1:00")}, std::nullopt},
        {"a timer counts down, its second rounded up", timerTo(62.5), 0.5},
        {"a timer counts down in whole seconds", timerTo(62), 1},
        {"a timer shows its last second until its zero", timerTo(0.5), 0.5},
        {"a timer at its zero", timerTo(0), 1},
        {"a timer counts up", timerTo(-7.75), 0.25},
        {"a timer counts up in whole seconds", timerTo(-7), 1},
        {"a timer that is still too long to be shown", timerTo(longest + 10.5), 11.5},
        {"a timer that has shown all it can", timerTo(-longest - 10), std::nullopt},
        {"a timer for no date", timerTo(std::numeric_limits<double>::quiet_NaN()), std::nullopt},
        {"a timer that is infinitely far away", timerTo(std::numeric_limits<double>::infinity()), std::nullopt},
        {"the sooner of two timers", HStack{.children = {timerTo(62.5), timerTo(-7.75)}}, 0.25},
        {"a transparent timer", Opacity{.value = 0, .content = timerTo(62.5)}, std::nullopt},
        {"a timer without room", Clipped{.content = FixedFrame{.width = 0, .height = 0, .content = timerTo(62.5)}},
         std::nullopt},
        {"a timer out of the widget", Offset{.x = 5000, .content = timerTo(62.5)}, std::nullopt},
        {"a timer that will be wide enough to reach in", Offset{.x = -150, .content = timerTo(-599)}, 1},
        {"a timer partly out of the widget", Offset{.x = 50, .content = timerTo(62.5)}, 0.5},
        {"a timer behind what is cut off", Clipped{.content = Offset{.y = 2000, .content = timerTo(62.5)}},
         std::nullopt},
        {"a timer whose seconds are cut off is early",
         Clipped{.content =
                     FixedFrame{.width = 8, .height = 40, .alignment = Alignment::leading, .content = timerTo(62.5)}},
         0.5},
        {"a hand turns all the time", handOf(60), 0},
        {"a hand backwards", handOf(-60), 0},
        {"a hand of period 0 stands still", handOf(0), std::nullopt},
        {"a hand that needs forever", handOf(std::numeric_limits<double>::infinity()), std::nullopt},
        {"a hand that cannot be seen", Opacity{.value = 0, .content = handOf(60)}, std::nullopt},
        {"a hand of nothing", ClockHandRotationEffect{.period = ClockHandPeriod::custom(60), .content = EmptyView{}},
         std::nullopt},
        {"a hand before a timer", ZStack{.children = {handOf(60), timerTo(62.5)}}, 0},
        {"a hand behind a timer", ZStack{.children = {timerTo(62.5), handOf(60)}}, 0},
        {"a body that may read the date", Dated{}, 0},
        {"a body that reads none, but shows a timer", Undated{}, 0.5},
        {"a body of the room", GeometryReader{[](const GeometryProxy&) -> AnyView { return Rectangle{}; }},
         std::nullopt},
    };
    RenderOptions options;
    options.size = {120, 60};
    options.environment.date = {moment};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::optional<Date> next = ImageRenderer(row.view, options).validUntil();
        ASSERT_EQ(next.has_value(), row.seconds.has_value());
        if (next) {
            EXPECT_EQ(next->secondsSince1970, moment + *row.seconds);
        }
    }
}

TEST(ValidUntil, OfDocuments) {
    const struct {
        const char* why;
        std::string_view document;
        std::optional<double> seconds;
    } rows[] = {
        {"a timer", R"({"version": "1.2", "nodes": {"main": {"type": "timer", "timestamp": 1795262528}}})", 0.75},
        {"a text", R"({"version": "1.2", "nodes": {"main": {"type": "text", "content": "12:00"}}})", std::nullopt},
        {"a clock's hand", R"({"version": "1.2", "nodes": {"main": {"type": "rectangle",
            "modifiers": [{"type": "clockHandRotationEffect", "period": 60}]}}})",
         0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        WidgetOptions options;
        options.date = Date{moment};
        options.timeZone = TimeZone();
        Widget widget = Document(row.document).widget(std::nullopt, options);
        const std::optional<Date> next = widget.validUntil();
        ASSERT_EQ(next.has_value(), row.seconds.has_value());
        if (next) {
            EXPECT_EQ(next->secondsSince1970, moment + *row.seconds);
        }
    }
}

TEST(ValidUntil, DrawsOnTheBudget) {
    RenderOptions options;
    options.environment.date = {moment};
    ImageRenderer renderer(timerTo(62.5), options);
    static_cast<void>(renderer.layoutTree());
    const Cost laidOut = renderer.cost();
    static_cast<void>(renderer.validUntil());
    EXPECT_GT(renderer.cost().steps, laidOut.steps);
    options.budget.steps = laidOut.steps;
    ImageRenderer poor(timerTo(62.5), options);
    static_cast<void>(poor.layoutTree());
    EXPECT_THROW(static_cast<void>(poor.validUntil()), TavrinError);
}

}  // namespace
}  // namespace tavrin
