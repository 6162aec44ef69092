// SPDX-License-Identifier: MIT
#include "tavrin/widget/animation_renderer.h"

#include <limits>
#include <stdexcept>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/platform/ui/view_tree.h"
#include "tavrin/widget/image_renderer.h"

namespace tavrin {
namespace {

using ::testing::ElementsAre;

constexpr double noon = 1'795'262'400;

AnyView timer(double secondsFromNoon) {
    return Text{.content = Date{noon + secondsFromNoon},
                .font = Font::monospacedDigitSystem(20, Font::Weight::regular)};
}
AnyView hand(double period) {
    return ClockHandRotationEffect{
        .period = ClockHandPeriod::custom(period),
        .content = FixedFrame{.width = 10, .height = 50, .alignment = Alignment::top, .content = Rectangle{}}};
}

/// A view whose body is the same at every moment.
struct Timeless {
    static constexpr std::string_view name = "Timeless";
    static constexpr bool readsDate = false;
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return Rectangle{}; }
};

/// One with another at each.
struct Today {
    static constexpr std::string_view name = "Today";
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const {
        return FixedFrame{.width = environment.date.secondsSince1970 - noon + 1, .content = Rectangle{}};
    }
};

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

/// A view with a moment at which it has no body.
struct Failing {
    static constexpr std::string_view name = "Failing";
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const {
        if (environment.date == Date{noon + 1}) throw std::runtime_error("not now");
        return Rectangle{};
    }
};

RenderOptions smallOptions() {
    RenderOptions options;
    options.size = {100, 60};
    options.scale = 2;
    return options;
}

FrameSpan spanOf(double seconds, double step = 1) { return {{noon}, {noon + seconds}, step}; }

TEST(AnimationRenderer, DrawsWhatAnImageRendererDraws) {
    const AnyView still = ZStack{.children = {Color::rgb(0.2, 0.5, 0.9), Text{.content = SharedText("still")}}};
    const AnyView moving = HStack{.children = {timer(3602), hand(7)}};
    const AnyView both = ZStack{.children = {still, moving, Text{.content = SharedText("after")}}};
    const AnyView views[] = {
        timer(62),
        hand(60),
        moving,
        both,
        Opacity{.value = 0.5, .content = both},
        ZStack{.children = {Opacity{.value = 0.5, .content = still}, Opacity{.value = 0.5, .content = both}, hand(3)}},
        CornerRadius{.radius = 9, .content = both},
        ZStack{.children = {still, CornerRadius{.radius = 9, .content = moving}, Clipped{.content = still}}},
        ClipShape{.shape = Circle{}, .content = CornerRadius{.radius = 9, .content = both}},
        Border{.color = Color::primary, .width = 3, .content = both},
        ZStack{.children = {Border{.color = Color::primary, .width = 3, .content = still}, hand(60)}},
        RotationEffect{.angle = 0.3, .content = ScaleEffect{.x = 0.8, .y = 0.7, .content = both}},
        Overlay{.overlay = still, .content = Background{.background = still, .content = moving}},
        GeometryReader{[both](const GeometryProxy&) { return both; }},
        ZStack{.children = {ZIndex{.value = 1, .content = hand(60)}, still, timer(9)}},
    };
    for (const bool rounded : {false, true}) {
        RenderOptions options = smallOptions();
        options.rounded = rounded;
        for (const AnyView& view : views) {
            AnimationRenderer renderer(view, options);
            for (double moment = 0; moment < 5; moment += 0.5) {
                SCOPED_TRACE(viewTreeText(view));
                options.environment.date = {noon + moment};
                EXPECT_TRUE(*renderer.pixels({noon + moment}) == ImageRenderer(view, options).pixels()) << moment;
            }
        }
    }
}

TEST(AnimationRenderer, DrawsOnlyWhatMayDiffer) {
    const struct {
        const char* why;
        AnyView view;
        FrameSpan span;
        std::size_t layouts, pictures;
    } rows[] = {
        {"nothing depends on the moment", Rectangle{}, spanOf(10), 1, 1},
        {"a body that says so", Timeless{}, spanOf(10), 1, 1},
        {"a body that may read the date", Today{}, spanOf(3), 4, 4},
        {"a timer", timer(600), spanOf(10), 11, 11},
        {"a timer between its seconds", timer(600), spanOf(2, 0.25), 3, 3},
        {"a timer out of sight", Opacity{.value = 0, .content = timer(600)}, spanOf(10), 1, 1},
        {"a timer in a geometry reader", GeometryReader{[](const GeometryProxy&) -> AnyView { return timer(600); }},
         spanOf(3), 4, 4},
        {"a clock hand", hand(60), spanOf(10), 11, 11},
        {"a clock hand in even turns", hand(5), spanOf(10, 5), 3, 1},
        {"a clock hand that stands still", hand(0), spanOf(10), 1, 1},
        {"a clock hand that turns out of sight", Opacity{.value = 0, .content = hand(60)}, spanOf(10), 1, 1},
        {"a round clock hand", ClockHandRotationEffect{.period = ClockHandPeriod::custom(60), .content = Circle{}},
         spanOf(60, 15), 5, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        AnimationRenderer renderer(row.view, smallOptions());
        std::vector<std::shared_ptr<const PixelBuffer>> pictures;
        std::size_t moments = 0;
        renderer.draw(row.span, [&](const std::shared_ptr<const PixelBuffer>& picture) {
            ++moments;
            if (pictures.empty() || pictures.back() != picture) pictures.push_back(picture);
        });
        EXPECT_EQ(moments, row.span.count());
        EXPECT_EQ(renderer.layoutCount(), row.layouts);
        EXPECT_EQ(pictures.size(), row.pictures);
    }
}

TEST(AnimationRenderer, TellsHowFarItIs) {
    std::vector<std::size_t> heard;
    AnimationRenderer renderer(timer(600), smallOptions());
    static_cast<void>(renderer.encode(spanOf(3), {.progress = [&](std::size_t done) { heard.push_back(done); }}));
    EXPECT_THAT(heard, ElementsAre(1, 2, 3, 4));
}

TEST(AnimationRenderer, RefusesWhatIsNoAnimation) {
    AnimationRenderer renderer(timer(600), smallOptions());
    EXPECT_THROW(static_cast<void>(renderer.encode(spanOf(-1), {})), TavrinError);
    EXPECT_THROW(static_cast<void>(renderer.encode(spanOf(1, 0), {})), TavrinError);
    for (const double rate : {0.0, -1.0, 101.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(static_cast<void>(renderer.encode(spanOf(1), {.framesPerSecond = rate})), TavrinError);
    EXPECT_EQ(renderer.layoutCount(), 0U);

    RenderOptions large = smallOptions();
    large.size = {2000, 1000};
    AnimationRenderer tooMuch(Rectangle{}, large);
    std::size_t taken = 0;
    EXPECT_THROW(tooMuch.draw(spanOf(10'000), [&](const auto&) { ++taken; }), TavrinError);
    EXPECT_EQ(taken, 0U);
    large.size = {0, 10};
    AnimationRenderer nothing(Rectangle{}, large);
    EXPECT_THROW(static_cast<void>(nothing.encode(spanOf(1), {})), TavrinError);
}

TEST(AnimationRenderer, PicturesThatAreHandedOutAreNotHeld) {
    RenderOptions options;
    options.size = {60, 60};
    options.scale = 1;
    options.budget.bytes = 200'000;  // some fourteen pictures
    AnimationRenderer renderer(Text{.content = Date{0}}, options);
    std::shared_ptr<const PixelBuffer> last;
    for (int second = 1; second <= 100; ++second) {
        last = renderer.pixels({1000.0 + second});
        EXPECT_FALSE(renderer.png(*last).empty());
    }
    EXPECT_EQ(renderer.layoutCount(), 100U);
}

TEST(AnimationRenderer, WaitsOnce) {
    int loads = 0;
    int bodies = 0;
    AnimationRenderer renderer(HStack{.children = {timer(600), Slow{&loads, &bodies}}}, smallOptions());
    for (double moment = 0; moment < 5; ++moment) static_cast<void>(renderer.pixels({noon + moment}));
    EXPECT_EQ(renderer.layoutCount(), 5U);
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(bodies, 1);
}

TEST(AnimationRenderer, ReportsOnce) {
    int reports = 0;
    RenderOptions options = smallOptions();
    options.diagnostics = [&](std::string_view) { ++reports; };
    const AnyView doubtful = FlexibleFrame{.minWidth = 2, .maxWidth = 1, .content = Rectangle{}};
    AnimationRenderer renderer(HStack{.children = {timer(600), doubtful}}, options);
    for (double moment = 0; moment < 3; ++moment) static_cast<void>(renderer.pixels({noon + moment}));
    EXPECT_EQ(renderer.layoutCount(), 3U);
    EXPECT_EQ(reports, 1);
}

TEST(AnimationRenderer, GoesOnAfterAFailure) {
    const AnyView view = HStack{.children = {Failing{}, timer(600)}};
    RenderOptions options = smallOptions();
    AnimationRenderer renderer(view, options);
    EXPECT_NE(renderer.pixels({noon}), nullptr);
    EXPECT_THROW(static_cast<void>(renderer.pixels({noon + 1})), std::runtime_error);
    EXPECT_THROW(static_cast<void>(renderer.pixels({noon + 1})), std::runtime_error);
    options.environment.date = {noon + 2};
    EXPECT_TRUE(*renderer.pixels({noon + 2}) == ImageRenderer(view, options).pixels());
}

TEST(AnimationRenderer, PaintsOnlyWhatDiffers) {
    RenderOptions options = smallOptions();
    const AnyView view = VStack{.children = {Text{.content = SharedText("still")}, timer(600)}};
    AnimationRenderer renderer(view, options);
    static_cast<void>(renderer.pixels({noon}));
    const std::uint64_t whole = renderer.work().pixels;
    EXPECT_EQ(whole, 200U * 120);
    static_cast<void>(renderer.pixels({noon + 1}));
    EXPECT_LT(renderer.work().pixels - whole, whole / 3) << "the timer's line";
}

}  // namespace
}  // namespace tavrin
