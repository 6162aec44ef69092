// SPDX-License-Identifier: MIT
#include "tavrin/nodes/color_node.h"

#include <gtest/gtest.h>

#include "tavrin/nodes/color_string.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

/// A colour with the given members, drawnColor.
AnyView drawnColor(std::string_view members, std::optional<std::string_view> model = std::nullopt) {
    return renderedNode("{\"type\": \"color\", " + std::string(members) + "}", model);
}

std::string failure(std::string_view members, std::optional<std::string_view> model = std::nullopt) {
    return failureOf([&] { return drawnColor(members, model); });
}

Color darkened(std::string_view light, std::string_view dark) { return *dynamicColor(hex(light), hex(dark)); }

TEST(UnitPoints, AreTenKeywords) {
    const struct {
        const char* keyword;
        UnitPoint point;
    } rows[] = {
        {"zero", {0, 0}},          {"center", {0.5, 0.5}},     {"leading", {0, 0.5}},  {"trailing", {1, 0.5}},
        {"top", {0.5, 0}},         {"bottom", {0.5, 1}},       {"topLeading", {0, 0}}, {"topTrailing", {1, 0}},
        {"bottomLeading", {0, 1}}, {"bottomTrailing", {1, 1}},
    };
    std::size_t number = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.keyword);
        const std::optional<UnitPointDSL> point = fromRawValue<UnitPointDSL>(row.keyword);
        ASSERT_TRUE(point.has_value());
        EXPECT_EQ(static_cast<std::size_t>(*point), number++);
        EXPECT_EQ(platformValue(*point), row.point);
    }
    for (const char* none : {"", "Center", "CENTER", " top", "topleading", "centre"})
        EXPECT_EQ(fromRawValue<UnitPointDSL>(none), std::nullopt) << none;
    EXPECT_EQ(sizeof(UnitPointDSL), 1U);
}

TEST(ColorNode, IsDecodedInTheOrderOfItsKeys) {
    const struct {
        const char* why;
        const char* members;
        const char* failure;
    } rows[] = {
        {"the value is required", "", "keyNotFound at nodes.main"},
        {"the flag comes before the missing value", R"("gradient": [])", "typeMismatch at nodes.main.gradient"},
        {"the start before the end", R"("end": [], "start": [], "value": [])", "typeMismatch at nodes.main.start"},
        {"the end before the value", R"("value": [], "end": {})", "typeMismatch at nodes.main.end"},
        {"the value before the dark one", R"("dark": [], "value": [])", "typeMismatch at nodes.main.value"},
        {"the dark one before the modifiers", R"("modifiers": 1, "dark": [], "value": "#FFFFFF")",
         "typeMismatch at nodes.main.dark"},
        {"the modifiers last", R"("modifiers": 1, "value": "#FFFFFF")", "typeMismatch at nodes.main.modifiers"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string members = *row.members == '\0' ? R"("x": 1)" : row.members;
        EXPECT_EQ(failure(members).substr(0, std::string_view(row.failure).size()), row.failure) << failure(members);
    }
}

TEST(ColorNode, IsSolid) {
    const char* const model =
        R"({"half": "#80FF0000", "opaque": "#FFFF0000", "plain": "#102030", "yes": "true", "no": false})";
    const struct {
        const char* why;
        const char* members;
        Color color;
    } rows[] = {
        {"a colour", R"("value": "#102030")", hex("#102030")},
        {"a literal is read as it is", R"("value": "#80FF0000")", hex("#80FF0000")},
        {"a model's has an alpha in hexadecimal", R"("value": "{{initServerParam.half}}")", hex("#50FF0000")},
        {"an opaque one becomes another", R"("value": "{{initServerParam.opaque}}")",
         Color::rgb(15 / 255.0, 240 / 255.0, 0, 0.1)},
        {"a model's without alpha", R"("value": "{{initServerParam.plain}}")", hex("#102030")},
        {"a dark colour", R"("value": "#FFFFFF", "dark": "#102030")", darkened("#FFFFFF", "#102030")},
        {"a model's dark colour is not converted", R"("value": "#FFFFFF", "dark": "{{initServerParam.half}}")",
         darkened("#FFFFFF", "#80FF0000")},
        {"a dark colour that is none", R"("value": "#FFFFFF", "dark": "#FFF")", hex("#FFFFFF")},
        {"no dark colour", R"("value": "#FFFFFF", "dark": null)", hex("#FFFFFF")},
        {"no gradient", R"("value": "#102030", "gradient": false)", hex("#102030")},
        {"no gradient in the model", R"("value": "#102030", "gradient": "{{initServerParam.no}}")", hex("#102030")},
        {"a capital", R"("value": "#102030", "gradient": "True")", hex("#102030")},
        {"another word", R"("value": "#102030", "gradient": "yes")", hex("#102030")},
        {"a number", R"("value": "#102030", "gradient": 1)", hex("#102030")},
        {"points alone", R"("value": "#102030", "start": "top", "end": "bottom")", hex("#102030")},
        {"a number's digits", R"("value": 102030)", hex("102030")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = drawnColor(row.members, model);
        ASSERT_NE(view.as<Color>(), nullptr);
        EXPECT_EQ(*view.as<Color>(), row.color);
    }
}

TEST(ColorNode, IsAGradient) {
    const char* const model = R"({"half": "#80FF0000", "yes": "true", "list": "#FF0000-#0000FF", "top": "top"})";
    const auto gradient = [](const char* rest) {
        return R"("gradient": true, "start": "top", "end": "bottomTrailing", )" + std::string(rest);
    };
    const struct {
        const char* why;
        std::string members;
        std::vector<Color> colors;
    } rows[] = {
        {"two colours", gradient(R"("value": "#FF0000-#0000FF")"), {hex("#FF0000"), hex("#0000FF")}},
        {"one", gradient(R"("value": "#FF0000")"), {hex("#FF0000")}},
        {"empty pieces", gradient(R"("value": "-#FF0000--#0000FF---")"), {hex("#FF0000"), hex("#0000FF")}},
        {"pieces that are none",
         gradient(R"("value": "#FF0000-nothing-#FFF-#0000FF")"),
         {hex("#FF0000"), hex("#0000FF")}},
        {"opacities, blanks and no hashes",
         gradient(R"("value": "50FF0000 - 0000FF")"),
         {hex("#50FF0000"), hex("#0000FF")}},
        {"no sign stands in a list", gradient(R"("value": "#-5102030-#0000FF")"), {hex("5102030"), hex("#0000FF")}},
        {"a sign with an accent joins nothing, for it is another character",
         gradient(R"("value": "#FF0000-\u0301#0000FF-#00FF00")"),
         {hex("#00FF00")}},
        {"dark is for solid colours",
         gradient(R"("value": "#FF0000-#0000FF", "dark": "#00FF00")"),
         {hex("#FF0000"), hex("#0000FF")}},
        {"a list from the model is no alpha",
         gradient(R"("value": "{{initServerParam.list}}")"),
         {hex("#FF0000"), hex("#0000FF")}},
        {"one colour from it has one", gradient(R"("value": "{{initServerParam.half}}")"), {hex("#50FF0000")}},
        {"true as text",
         R"("gradient": "true", "start": "top", "end": "bottomTrailing", "value": "#FF0000")",
         {hex("#FF0000")}},
        {"everything in the model",
         R"("gradient": "{{initServerParam.yes}}", "start": "{{initServerParam.top}}", "end": "bottomTrailing", "value": "#FF0000")",
         {hex("#FF0000")}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = drawnColor(row.members, model);
        const LinearGradient* drawnGradient = view.as<LinearGradient>();
        ASSERT_NE(drawnGradient, nullptr);
        EXPECT_EQ(drawnGradient->colors, row.colors);
        EXPECT_EQ(drawnGradient->startPoint, UnitPoint::top);
        EXPECT_EQ(drawnGradient->endPoint, UnitPoint::bottomTrailing);
    }
}

TEST(ColorNode, Fails) {
    const char* const endless = "ColorNode: gradient must set start and end";
    const struct {
        const char* why;
        const char* members;
        std::string failure;
    } rows[] = {
        {"no colour", R"("value": "#FFF")", "ColorNode: invalid color: #FFF"},
        {"blanks are told too", R"("value": " x ")", "ColorNode: invalid color:  x "},
        {"nothing", R"("value": "")", "ColorNode: invalid color: "},
        {"a good dark colour does not help", R"("value": "no", "dark": "#FFFFFF")", "ColorNode: invalid color: no"},
        {"a list is no solid colour", R"("value": "a-#FF0000")", "ColorNode: invalid color: a-#FF0000"},
        {"an unbound value", R"("value": "{{initServerParam.a}}")", "ColorNode: invalid color: {{initServerParam.a}}"},
        {"a gradient of no colours", R"("gradient": true, "start": "top", "end": "top", "value": "a--#FFF")",
         "ColorNode: invalid color: a--#FFF"},
        {"the colours come first", R"("gradient": true, "value": "-")", "ColorNode: invalid color: -"},
        {"no end", R"("gradient": true, "start": "top", "value": "#FF0000")", endless},
        {"no start", R"("gradient": true, "end": "top", "value": "#FF0000")", endless},
        {"a start that is none", R"("gradient": true, "start": "Top", "end": "top", "value": "#FF0000")", endless},
        {"an end that is not bound",
         R"("gradient": true, "start": "top", "end": "{{initServerParam.a}}", "value": "#FF0000")", endless},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(failure(row.members), row.failure);
    }
}

TEST(ColorNode, BindsInTheOrderOfItsKeys) {
    const std::vector<std::string> keys{"gradient", "start", "end", "value", "dark"};
    std::string members;
    for (const std::string& key : keys)
        members = "\"" + key + "\": \"{{initServerParam." + key + "}}\"" + (members.empty() ? "" : ", ") + members;
    std::string model = "{";
    for (const std::string& key : keys) {
        EXPECT_EQ(failure(members, model + "}"), "ResolveExpression: key path not found in model: [\"" + key + "\"]");
        model += (model.size() > 1 ? ", \"" : "\"") + key + "\": \"102030\"";
    }
    EXPECT_EQ(failure(members, model + "}"), "");
}

TEST(ColorNode, IsConvertedOnceOnly) {
    Node node = nodeFrom(R"({"type": "color", "value": "{{initServerParam.a}}"})");
    const ModelContext model = modelFrom(R"({"a": "#80FF0000"})");
    node.bindModel(model);
    node.bindModel(model);
    Context context;
    EXPECT_EQ(*node.render(context).as<Color>(), hex("#50FF0000"));
}

TEST(ColorNode, AppliesItsModifiers) {
    const AnyView view = drawnColor(R"("value": "#102030", "modifiers": [{"type": "opacity", "opacity": 0.5}])");
    ASSERT_NE(view.as<Opacity>(), nullptr);
    EXPECT_EQ(*view.as<Opacity>()->content.as<Color>(), hex("#102030"));
    EXPECT_EQ(failure(R"("value": "no", "modifiers": [{"type": "foregroundColor", "color": {"value": "nor"}}])"),
              "ColorNode: invalid color: no")
        << "the colour itself is examined first";
}

}  // namespace
}  // namespace tavrin
