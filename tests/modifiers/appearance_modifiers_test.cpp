// SPDX-License-Identifier: MIT
#include <limits>

#include <gtest/gtest.h>

#include "tavrin/nodes/color_string.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/modifiers/modified.h"

namespace tavrin {
namespace {

std::string failure(std::string_view modifier, std::optional<std::string_view> model = std::nullopt) {
    return failureOf([&] { return modified(modifier, model); });
}

constexpr const char* gradientNode =
    R"({"type": "color", "gradient": true, "start": "top", "end": "bottom", "value": "#FF0000-#0000FF"})";

TEST(AppearanceModifiers, RequireTheirKeys) {
    const struct {
        const char* why;
        const char* modifier;
        const char* failure;
    } rows[] = {
        {"a colour", R"({"type": "foregroundColor"})", "keyNotFound"},
        {"not a string", R"({"type": "foregroundColor", "color": "#FFFFFF"})", "typeMismatch"},
        {"a colour's own key", R"({"type": "foregroundColor", "color": {}})", "keyNotFound"},
        {"a background", R"({"type": "background"})", "keyNotFound"},
        {"a background's type", R"({"type": "background", "view": {}})", "keyNotFound"},
        {"an overlay", R"({"type": "overlay"})", "keyNotFound"},
        {"a clip shape", R"({"type": "clipShape"})", "keyNotFound"},
        {"a border's string", R"({"type": "border", "colorNode": {"value": "#FFFFFF"}, "width": 1})", "keyNotFound"},
        {"a border's colour", R"({"type": "border", "color": "#FFFFFF", "width": 1})", "keyNotFound"},
        {"a border's width", R"({"type": "border", "color": "#FFFFFF", "colorNode": {"value": "#FFFFFF"}})",
         "keyNotFound"},
        {"a radius", R"({"type": "cornerRadius"})", "keyNotFound"},
        {"an opacity", R"({"type": "opacity"})", "keyNotFound"},
        {"an opacity that can be read", R"({"type": "opacity", "opacity": []})", "typeMismatch"},
        {"a word is no opacity", R"({"type": "opacity", "opacity": "half"})", "conversion"},
        {"nor a radius", R"({"type": "cornerRadius", "radius": "half"})", "conversion"},
        {"nor a border's width",
         R"({"type": "border", "color": "#FFFFFF", "colorNode": {"value": "#FFFFFF"}, "width": "half"})", "conversion"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(failure(row.modifier).starts_with(row.failure)) << failure(row.modifier);
    }
}

TEST(ForegroundColorModifier, TakesAPlainColour) {
    const struct {
        const char* why;
        const char* color;
        Color expected;
    } rows[] = {
        {"a colour", R"({"value": "#102030"})", hex("#102030")},
        {"two", R"({"value": "#102030", "dark": "#FFFFFF"})", *dynamicColor(hex("#102030"), hex("#FFFFFF"))},
        {"a model's", R"({"value": "{{initServerParam.a}}"})", hex("#50FF0000")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = modified(R"({"type": "foregroundColor", "color": )" + std::string(row.color) + "}",
                                      R"({"a": "#80FF0000"})");
        ASSERT_NE(view.as<ForegroundColor>(), nullptr);
        EXPECT_EQ(view.as<ForegroundColor>()->color, row.expected);
        EXPECT_NE(view.as<ForegroundColor>()->content.as<Spacer>(), nullptr);
    }
}

TEST(ForegroundColorModifier, RefusesAnythingElse) {
    const struct {
        const char* why;
        std::string color;
        const char* failure;
    } rows[] = {
        {"a gradient", gradientNode, "ForegroundColorModifier: invalid color node"},
        {"a colour with modifiers", R"({"value": "#102030", "modifiers": [{"type": "clipped"}]})",
         "ForegroundColorModifier: invalid color node"},
        {"no colour", R"({"value": "pale"})", "ColorNode: invalid color: pale"},
        {"an endless gradient", R"({"gradient": true, "value": "#102030"})",
         "ColorNode: gradient must set start and end"},
        {"a model without it", R"({"value": "{{initServerParam.b}}"})",
         "ResolveExpression: key path not found in model: [\"b\"]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(failure(R"({"type": "foregroundColor", "color": )" + row.color + "}", "{}"), row.failure);
    }
}

TEST(BackgroundAndOverlayModifiers, TakeAnyNode) {
    for (const std::string type : {"background", "overlay"}) {
        SCOPED_TRACE(type);
        const auto second = [&](const AnyView& view) -> const AnyView& {
            if (const Background* background = view.as<Background>()) {
                EXPECT_EQ(background->alignment, Alignment::center);
                EXPECT_NE(background->content.as<Spacer>(), nullptr);
                return background->background;
            }
            EXPECT_EQ(view.as<Overlay>()->alignment, Alignment::center);
            EXPECT_NE(view.as<Overlay>()->content.as<Spacer>(), nullptr);
            return view.as<Overlay>()->overlay;
        };
        const auto with = [&](std::string_view node) {
            return "{\"type\": \"" + type + "\", \"view\": " + std::string(node) + "}";
        };
        EXPECT_NE(second(modified(with(gradientNode))).as<LinearGradient>(), nullptr);
        EXPECT_NE(second(modified(with(R"({"type": "text", "content": "a", "modifiers": [{"type": "clipped"}]})")))
                      .as<Clipped>(),
                  nullptr);
        EXPECT_NE(second(modified(with(R"({"type": "hstack", "children": []})"))).as<HStack>(), nullptr);
        EXPECT_NE(second(modified(R"({"type": ")" + type + R"(", "alignment": "top", "view": {"type": "circle"}})"))
                      .as<Circle>(),
                  nullptr)
            << "there is no key for the alignment";

        EXPECT_EQ(failure(with(R"({"type": "color", "value": "pale"})")), "ColorNode: invalid color: pale");
        EXPECT_EQ(failure(with(R"({"type": "node", "name": "gone"})")).substr(0, 8), "RefNode:");
        EXPECT_TRUE(failure(with(R"({"type": "color"})")).starts_with("keyNotFound at nodes.main.modifiers[0].view"))
            << failure(with(R"({"type": "color"})"));
        EXPECT_EQ(failure(with(R"({"type": "text", "content": "{{initServerParam.b}}"})"), "{}"),
                  "ResolveExpression: key path not found in model: [\"b\"]");
    }
}

TEST(BackgroundAndOverlayModifiers, ReachReferences) {
    const AnyView view = rendered(
        R"({"version": "1.2", "nodes": {
            "main": {"type": "spacer", "modifiers": [{"type": "background", "view": {"type": "node", "name": "paper"}},
                                                     {"type": "overlay", "view": {"type": "node", "name": "paper"}}]},
            "paper": {"type": "color", "value": "{{initServerParam.a}}"}}})",
        R"({"a": "#80FF0000"})");
    ASSERT_NE(view.as<Overlay>(), nullptr);
    EXPECT_EQ(*view.as<Overlay>()->overlay.as<Color>(), hex("#50FF0000"));
    EXPECT_EQ(*view.as<Overlay>()->content.as<Background>()->background.as<Color>(), hex("#50FF0000"));
    EXPECT_EQ(failureOf([] {
                  return rendered(
                      R"({"version": "1.2", "nodes": {"main": {"type": "node", "name": "a"},
                          "a": {"type": "spacer", "modifiers": [{"type": "overlay", "view": {"type": "node", "name": "a"}}]}}})");
              }),
              "RefNode: reference cycle: a -> a");
}

TEST(BackgroundAndOverlayModifiers, BindWhatTheyHoldOnce) {
    // Each level bound twice would be 2^100 nodes.
    std::string node = R"({"type": "text", "content": "{{initServerParam.a}}"})";
    for (int i = 0; i < 100; ++i)
        node = R"({"type": "spacer", "modifiers": [{"type": ")" + std::string(i % 2 == 0 ? "background" : "overlay") +
               R"(", "view": )" + node + "}]}";
    AnyView view = renderedNode(node, R"({"a": "deep"})");
    for (int i = 99; i >= 0; --i)
        view = AnyView(i % 2 == 0 ? view.as<Background>()->background : view.as<Overlay>()->overlay);
    EXPECT_EQ(std::get<SharedText>(view.as<Text>()->content), "deep");
}

TEST(BorderModifier, FallsBackAndNeverFails) {
    const struct {
        const char* why;
        std::string colorNode;
        const char* color;
        Color expected;
    } rows[] = {
        {"the node's colour", R"({"value": "#102030"})", "#FF0000", hex("#102030")},
        {"whatever the string is", R"({"value": "#102030"})", "none", hex("#102030")},
        {"two colours", R"({"value": "#102030", "dark": "#FFFFFF"})", "#FF0000",
         *dynamicColor(hex("#102030"), hex("#FFFFFF"))},
        {"a gradient gives way", gradientNode, "#FF0000", hex("#FF0000")},
        {"a colour with modifiers too", R"({"value": "#102030", "modifiers": [{"type": "clipped"}]})", "#FF0000",
         hex("#FF0000")},
        {"and no colour", R"({"value": "pale"})", "#50FF0000", hex("#50FF0000")},
        {"and an endless gradient", R"({"gradient": true, "value": "#102030"})", "#FF0000", hex("#FF0000")},
        {"and one whose modifiers fail",
         R"({"value": "#102030", "modifiers": [{"type": "background", "view": {"type": "node", "name": "gone"}}]})",
         "#FF0000", hex("#FF0000")},
        {"white in the end", R"({"value": "pale"})", "none", Color::white},
        {"a gradient and no string", gradientNode, "", Color::white},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = modified(R"({"type": "border", "width": 2, "color": ")" + std::string(row.color) +
                                      R"(", "colorNode": )" + row.colorNode + "}");
        ASSERT_NE(view.as<Border>(), nullptr);
        EXPECT_EQ(view.as<Border>()->color, row.expected);
        EXPECT_EQ(view.as<Border>()->width, 2);
        EXPECT_NE(view.as<Border>()->content.as<Spacer>(), nullptr);
    }
}

TEST(BorderModifier, HasAWidthAndBindsInOrder) {
    const auto border = [](const char* width) {
        return R"({"type": "border", "colorNode": {"value": "#102030"}, "color": "", "width": )" + std::string(width) +
               "}";
    };
    EXPECT_EQ(modified(border("\"2.5\"")).as<Border>()->width, 2.5);
    EXPECT_EQ(modified(border("-1")).as<Border>()->width, -1);
    EXPECT_EQ(modified(border("\"{{initServerParam.w}}\"")).as<Border>()->width, 0) << "not bound";
    EXPECT_EQ(modified(border("\"{{initServerParam.w}}\""), R"({"w": 3})").as<Border>()->width, 3);

    const char* const expressions =
        R"({"type": "border", "colorNode": {"value": "{{initServerParam.n}}"}, "width": "{{initServerParam.w}}", "color": "{{initServerParam.c}}"})";
    EXPECT_EQ(failure(expressions, "{}"), "ResolveExpression: key path not found in model: [\"c\"]");
    EXPECT_EQ(failure(expressions, R"({"c": 1})"), "ResolveExpression: key path not found in model: [\"w\"]");
    EXPECT_EQ(failure(expressions, R"({"c": 1, "w": 1})"), "ResolveExpression: key path not found in model: [\"n\"]");
    const AnyView bound = modified(expressions, R"({"c": "#80FF0000", "w": 1, "n": "pale"})");
    EXPECT_EQ(bound.as<Border>()->color, hex("#80FF0000")) << "the string is not converted";
}

TEST(ClipShapeModifier, TakesThreeBareShapes) {
    const struct {
        const char* why;
        const char* node;
        Shape shape;
    } rows[] = {
        {"a circle", R"({"type": "circle"})", Circle{}},
        {"a capsule", R"({"type": "capsule"})", Capsule{}},
        {"its style", R"({"type": "capsule", "style": "continuous"})", Capsule{RoundedCornerStyle::continuous}},
        {"a rounded rectangle", R"({"type": "roundedRectangle", "cornerRadius": 8, "style": "continuous"})",
         RoundedRectangle{8, RoundedCornerStyle::continuous}},
        {"a model's radius", R"({"type": "roundedRectangle", "cornerRadius": "{{initServerParam.r}}"})",
         RoundedRectangle{4}},
        {"no modifiers", R"({"type": "circle", "modifiers": []})", Circle{}},
        {"a width without a stroke", R"({"type": "circle", "lineWidth": 3, "strokeColor": {"value": "#102030"}})",
         Circle{}},
        {"a reference", R"({"type": "node", "name": "round"})", Circle{}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = rendered(
            R"({"version": "1.2", "nodes": {"round": {"type": "circle"}, "main": {"type": "spacer", "modifiers": [{"type": "clipShape", "view": )" +
                std::string(row.node) + "}]}}}",
            R"({"r": 4})");
        ASSERT_NE(view.as<ClipShape>(), nullptr);
        EXPECT_EQ(view.as<ClipShape>()->shape, row.shape);
        EXPECT_TRUE(view.as<ClipShape>()->antialiased);
        EXPECT_NE(view.as<ClipShape>()->content.as<Spacer>(), nullptr);
    }
}

TEST(ClipShapeModifier, RefusesAnythingElse) {
    const struct {
        const char* why;
        const char* node;
        const char* type;
    } rows[] = {
        {"a rectangle", R"({"type": "rectangle"})", "tavrin::Rectangle"},
        {"a stroke", R"({"type": "circle", "stroke": true})", "tavrin::StrokedShape"},
        {"a fill", R"({"type": "capsule", "fillColor": {"value": "#102030"}})", "tavrin::FilledShape"},
        {"a fill of gray",
         R"({"type": "circle", "fillColor": {"gradient": true, "start": "top", "end": "top", "value": "#102030"}})",
         "tavrin::FilledShape"},
        {"a modifier", R"({"type": "circle", "modifiers": [{"type": "opacity", "opacity": 1}]})", "tavrin::Opacity"},
        {"a colour", R"({"type": "color", "value": "#102030"})", "tavrin::Color"},
        {"a text", R"({"type": "text", "content": "a"})", "tavrin::Text"},
        {"a stack around a circle", R"({"type": "zstack", "children": [{"type": "circle"}]})", "tavrin::ZStack"},
        {"nothing", R"({"type": "emptyView"})", "tavrin::EmptyView"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(failure(R"({"type": "clipShape", "view": )" + std::string(row.node) + "}"),
                  std::string("Invalid Shape: unsupported shape ") + row.type);
    }
    EXPECT_EQ(failure(R"({"type": "clipShape", "view": {"type": "rectangle", "fillColor": {"value": "pale"}}})"),
              "ColorNode: invalid color: pale")
        << "what fails inside comes first";
}

TEST(ClippedModifier, HasNoKeys) {
    const AnyView view = modified(R"({"type": "clipped", "antialiased": true})");
    ASSERT_NE(view.as<Clipped>(), nullptr);
    EXPECT_FALSE(view.as<Clipped>()->antialiased);
}

TEST(CornerRadiusAndOpacityModifiers, PassNumbersOn) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct {
        const char* why;
        const char* number;
        double expected;
    } rows[] = {
        {"a number", "0.5", 0.5},
        {"more than one", "1.5", 1.5},
        {"less than none", "-3", -3},
        {"as text", "\"0.25\"", 0.25},
        {"single precision", "0.1", double{0.1F}},
        {"infinite", "\"inf\"", infinity},
        {"too large for it", "1e300", infinity},
        {"a model's", "\"{{initServerParam.a}}\"", 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const char* const model = R"({"a": 7})";
        const AnyView faded = modified(R"({"type": "opacity", "opacity": )" + std::string(row.number) + "}", model);
        ASSERT_NE(faded.as<Opacity>(), nullptr);
        EXPECT_EQ(faded.as<Opacity>()->value, row.expected);
        const AnyView cut = modified(R"({"type": "cornerRadius", "radius": )" + std::string(row.number) + "}", model);
        ASSERT_NE(cut.as<CornerRadius>(), nullptr);
        EXPECT_EQ(cut.as<CornerRadius>()->radius, row.expected);
        EXPECT_TRUE(cut.as<CornerRadius>()->antialiased);
    }
    EXPECT_EQ(modified(R"({"type": "opacity", "opacity": "{{initServerParam.a}}"})").as<Opacity>()->value, 0)
        << "not bound";
    EXPECT_EQ(modified(R"({"type": "cornerRadius", "radius": "{{initServerParam.a}}"})").as<CornerRadius>()->radius, 0);
    EXPECT_EQ(failure(R"({"type": "opacity", "opacity": "{{initServerParam.a}}"})", "{}"),
              "ResolveExpression: key path not found in model: [\"a\"]");
}

TEST(AppearanceModifiers, AreAppliedFromFirstToLast) {
    EXPECT_EQ(failure(R"({"type": "clipShape", "view": {"type": "rectangle"}},
                         {"type": "foregroundColor", "color": {"value": "pale"}})"),
              "Invalid Shape: unsupported shape tavrin::Rectangle");
    const AnyView view = modified(R"({"type": "opacity", "opacity": 0.5}, {"type": "cornerRadius", "radius": 3},
                                     {"type": "clipped"})");
    ASSERT_NE(view.as<Clipped>(), nullptr);
    ASSERT_NE(view.as<Clipped>()->content.as<CornerRadius>(), nullptr);
    EXPECT_NE(view.as<Clipped>()->content.as<CornerRadius>()->content.as<Opacity>(), nullptr);
}

}  // namespace
}  // namespace tavrin
