// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/effect_modifiers.h"

#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "tavrin/modifiers/kel_clock_widget_kit.h"
#include "tavrin/modifiers/widget_url_modifier.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/modifiers/modified.h"

namespace tavrin {
namespace {

TEST(EffectModifiers, DeclareTheVersionThatBroughtThem) {
    EXPECT_EQ(ScaleEffectModifier::version, DSLVersion::v1_2);
    EXPECT_EQ(RotationEffectModifier::version, DSLVersion::v1_2);
    EXPECT_EQ(ClockHandRotationEffectModifier::version, DSLVersion::v1_2);
    EXPECT_EQ(WidgetURLModifier::version, DSLVersion::v1);
}

TEST(EffectModifiers, RequireTheirKeys) {
    const std::pair<const char*, const char*> rows[] = {
        {R"({"type": "rotationEffect"})", "keyNotFound"},
        {R"({"type": "clockHandRotationEffect"})", "keyNotFound"},
        {R"({"type": "widgetURL"})", "keyNotFound"},
        {R"({"type": "rotationEffect", "angle": "right"})", "conversion"},
        {R"({"type": "clockHandRotationEffect", "period": "hour"})", "conversion"},
        {R"({"type": "scaleEffect", "x": []})", "typeMismatch"},
        {R"({"type": "transition"})", "dataCorrupted at nodes.main.modifiers[0].type: Type unsupported"},
    };
    for (const auto& row : rows) {
        const std::string failure = failureOf([&] { return modified(row.first); });
        EXPECT_TRUE(failure.starts_with(row.second)) << failure;
    }
}

TEST(EffectModifiers, Scale) {
    const struct {
        const char* why;
        const char* members;
        double x;
        double y;
        UnitPoint anchor;
    } rows[] = {
        {"absent is 1", "", 1, 1, UnitPoint::center},
        {"one axis alone", R"(, "x": 2)", 2, 1, UnitPoint::center},
        {"both", R"(, "x": "0.5", "y": -2, "anchor": "topTrailing")", 0.5, -2, UnitPoint::topTrailing},
        {"a word is 1", R"(, "x": "wide", "y": 3, "anchor": "zero")", 1, 3, UnitPoint::zero},
        {"an unknown anchor is the centre", R"(, "anchor": "middle")", 1, 1, UnitPoint::center},
        {"nothing at all", R"(, "x": 0)", 0, 1, UnitPoint::center},
        {"from the model", R"(, "x": "{{initServerParam.x}}", "anchor": "{{initServerParam.a}}")", 4, 1,
         UnitPoint::leading},
        {"what the model has is no number", R"(, "x": "{{initServerParam.a}}")", 1, 1, UnitPoint::center},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view =
            modified(R"({"type": "scaleEffect")" + std::string(row.members) + "}", R"({"x": 4, "a": "leading"})");
        const auto* scale = view.as<ScaleEffect>();
        ASSERT_NE(scale, nullptr);
        EXPECT_EQ(scale->x, row.x);
        EXPECT_EQ(scale->y, row.y);
        EXPECT_EQ(scale->anchor, row.anchor);
        EXPECT_NE(scale->content.as<Spacer>(), nullptr);
    }
}

TEST(EffectModifiers, RotateByDegrees) {
    const std::pair<const char*, double> rows[] = {
        {"90", std::numbers::pi / 2},
        {"\"-45\"", -std::numbers::pi / 4},
        {"0", 0},
        {"\"{{initServerParam.a}}\"", 0},
        {"\"inf\"", std::numeric_limits<double>::infinity()},
    };
    for (const auto& [angle, radians] : rows) {
        const AnyView view =
            modified(R"({"type": "rotationEffect", "anchor": "bottom", "angle": )" + std::string(angle) + "}");
        ASSERT_NE(view.as<RotationEffect>(), nullptr);
        EXPECT_DOUBLE_EQ(view.as<RotationEffect>()->angle, radians) << angle;
        EXPECT_EQ(view.as<RotationEffect>()->anchor, UnitPoint::bottom);
    }
}

TEST(EffectModifiers, TurnClockHandsInTheirZone) {
    const struct {
        const char* why;
        const char* members;
        const char* zone;
        double seconds;
    } rows[] = {
        {"without a zone the device's", R"("period": 60)", "America/New_York", 60},
        {"a zone", R"("period": 60, "timeZone": "Asia/Tokyo")", "Asia/Tokyo", 60},
        {"an unknown one", R"("period": 60, "timeZone": "Mars/Olympus")", "America/New_York", 60},
        {"an empty one", R"("period": 60, "timeZone": "")", "America/New_York", 60},
        {"letter case counts", R"("period": 60, "timeZone": "asia/tokyo")", "America/New_York", 60},
        {"an abbreviation", R"("period": 60, "timeZone": "CEST")", "Europe/Paris", 60},
        {"hours from Greenwich", R"("period": 60, "timeZone": "GMT-3:30")", "GMT-0330", 60},
        {"an expression that is not bound", R"("period": "{{initServerParam.p}}", "timeZone": "{{initServerParam.z}}")",
         "America/New_York", 0},
        {"periods are held in single precision", R"("period": 0.1)", "America/New_York", double{0.1F}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        Context context;
        context.timeZone = TimeZone::named("America/New_York");
        const AnyView view = TavrinEngine().loadView(
            spacerWith(R"({"type": "clockHandRotationEffect", )" + std::string(row.members) + "}"), std::nullopt,
            context);
        const auto* hand = view.as<ClockHandRotationEffect>();
        ASSERT_NE(hand, nullptr);
        EXPECT_EQ(hand->timeZone.identifier(), row.zone);
        EXPECT_EQ(hand->period, ClockHandPeriod::custom(row.seconds));
        EXPECT_EQ(hand->anchor, UnitPoint::center);
    }
    const AnyView view = modified(R"({"type": "clockHandRotationEffect", "period": 60})");
    EXPECT_EQ(view.as<ClockHandRotationEffect>()->timeZone, TimeZone::current()) << "of the process";
}

TEST(EffectModifiers, BindInTheOrderOfTheirFields) {
    const char* const modifier = R"({"type": "clockHandRotationEffect", "anchor": "{{initServerParam.a}}",
        "timeZone": "{{initServerParam.z}}", "period": "{{initServerParam.p}}"})";
    const auto failure = [&](std::string_view model) { return failureOf([&] { return modified(modifier, model); }); };
    EXPECT_EQ(failure("{}"), "ResolveExpression: key path not found in model: [\"p\"]");
    EXPECT_EQ(failure(R"({"p": 1})"), "ResolveExpression: key path not found in model: [\"z\"]");
    EXPECT_EQ(failure(R"({"p": 1, "z": "UTC"})"), "ResolveExpression: key path not found in model: [\"a\"]");
    EXPECT_EQ(failure(R"({"p": "never"})"), "ResolveExpression: unable to convert value never to Float");
}

TEST(KelClockWidgetKit, NamesThePlatformsPeriods) {
    using KelClockWidgetKit::ClockHandRotationPeriod;
    const struct {
        ClockHandRotationPeriod period;
        ClockHandPeriod expected;
        double seconds;
    } rows[] = {
        {ClockHandRotationPeriod::custom(12.5), ClockHandPeriod::custom(12.5), 12.5},
        {ClockHandRotationPeriod::hour, {ClockHandPeriod::Hand::hour, 0}, 43'200},
        {ClockHandRotationPeriod::minute, {ClockHandPeriod::Hand::minute, 0}, 3600},
        {ClockHandRotationPeriod::second, {ClockHandPeriod::Hand::second, 0}, 60},
    };
    for (const auto& row : rows) {
        const AnyView view = KelClockWidgetKit::clockHandRotationEffect(
            Circle{}, row.period, TimeZone::named("Asia/Tokyo").value(), UnitPoint::bottom);
        const auto* hand = view.as<ClockHandRotationEffect>();
        ASSERT_NE(hand, nullptr);
        EXPECT_EQ(hand->period, row.expected);
        EXPECT_EQ(hand->period.seconds(), row.seconds);
        EXPECT_EQ(hand->timeZone.identifier(), "Asia/Tokyo");
        EXPECT_EQ(hand->anchor, UnitPoint::bottom);
        EXPECT_NE(hand->content.as<Circle>(), nullptr);
    }
}

TEST(WidgetURLModifier, TheFirstAddressIsTheWidgets) {
    const auto mark = [](std::string_view url) {
        return R"({"type": "widgetURL", "url": ")" + std::string(url) + "\"}";
    };
    const struct {
        const char* why;
        std::string modifiers;
        const char* widgetURL;
        const char* outer;  ///< what the outermost view is marked with
    } rows[] = {
        {"an address", mark("app:a"), "app:a", "app:a"},
        {"what an address may not hold is encoded", mark("app:a b"), "app:a%20b", "app:a%20b"},
        {"two", mark("app:a") + "," + mark("app:b"), "app:a", "app:b"},
        {"what is no address leaves it unset", mark("a b:"), "", ""},
        {"for the next", mark("a b:") + "," + mark("app:b"), "app:b", "app:b"},
        {"and takes nothing away", mark("app:a") + "," + mark(""), "app:a", ""},
        {"an expression that is not bound", mark("{{initServerParam.u}}"), "", ""},
    };
    for (const bool converts : {false, true})
        for (const auto& row : rows) {
            SCOPED_TRACE(row.why);
            Context context;
            if (converts)
                context.linkConverter = [](const URL& url) { return URL::parse(url.string() + "/x").value(); };
            const auto expected = [&](std::string url) { return url.empty() || !converts ? url : url + "/x"; };
            const AnyView view = TavrinEngine().loadView(spacerWith(row.modifiers), std::nullopt, context);
            EXPECT_EQ(context.widgetURL() ? context.widgetURL()->string() : "", expected(row.widgetURL));
            ASSERT_NE(view.as<WidgetURL>(), nullptr);
            const std::optional<URL>& marked = view.as<WidgetURL>()->url;
            EXPECT_EQ(marked ? marked->string() : "", expected(row.outer));
        }
}

TEST(WidgetURLModifier, AContextKeepsItsAddressFromCallToCall) {
    Context context;
    for (const char* url : {"app:a", "app:b"}) {
        const std::string modifier = R"({"type": "widgetURL", "url": ")" + std::string(url) + "\"}";
        static_cast<void>(TavrinEngine().loadView(spacerWith(modifier), std::nullopt, context));
        EXPECT_EQ(context.widgetURL()->string(), "app:a");
    }
}

}  // namespace
}  // namespace tavrin
