// SPDX-License-Identifier: MIT
#include "tavrin/nodes/shape_nodes.h"

#include <gtest/gtest.h>

#include "tavrin/nodes/color_string.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

/// The four shapes, each with the members that it needs and the outline it has.
const struct {
    const char* type;
    const char* members;
    Shape outline;
} shapes[] = {
    {"circle", "", Circle{}},
    {"rectangle", "", Rectangle{}},
    {"roundedRectangle", R"(, "cornerRadius": 6)", RoundedRectangle{6}},
    {"capsule", "", Capsule{}},
};

AnyView drawnShape(std::string_view type, std::string_view members,
                   std::optional<std::string_view> model = std::nullopt) {
    return renderedNode("{\"type\": \"" + std::string(type) + "\"" + std::string(members) + "}", model);
}

std::optional<Shape> bareShape(const AnyView& view) {
    if (const auto* circle = view.as<Circle>()) return *circle;
    if (const auto* rectangle = view.as<Rectangle>()) return *rectangle;
    if (const auto* rounded = view.as<RoundedRectangle>()) return *rounded;
    if (const auto* capsule = view.as<Capsule>()) return *capsule;
    return std::nullopt;
}

TEST(ShapeNodes, StandBare) {
    for (const auto& shape : shapes) {
        for (const char* members :
             {"", R"(, "stroke": false)", R"(, "stroke": null)", R"(, "stroke": "false")", R"(, "stroke": "yes")",
              R"(, "stroke": "True")", R"(, "stroke": 1)", R"(, "stroke": "{{initServerParam.a}}")",
              R"(, "lineWidth": 4)", R"(, "strokeColor": {"value": "nonsense"})", R"(, "fillColor": null)",
              R"(, "modifiers": [])"}) {
            SCOPED_TRACE(std::string(shape.type) + members);
            EXPECT_EQ(bareShape(drawnShape(shape.type, std::string(shape.members) + members)), shape.outline);
        }
    }
}

TEST(ShapeNodes, AreStroked) {
    const char* const model = R"({"yes": true, "width": "2.5", "red": "#80FF0000"})";
    const struct {
        const char* why;
        const char* members;
        Color color;
        double width;
    } rows[] = {
        {"gray and one point wide", R"("stroke": true)", Color::gray, 1},
        {"true as text", R"("stroke": "true")", Color::gray, 1},
        {"in a colour", R"("stroke": true, "strokeColor": {"value": "#102030"})", hex("#102030"), 1},
        {"in two", R"("stroke": true, "strokeColor": {"value": "#102030", "dark": "#FFFFFF"})",
         *dynamicColor(hex("#102030"), hex("#FFFFFF")), 1},
        {"a type is not read where a colour is asked for",
         R"("stroke": true, "strokeColor": {"type": "text", "value": "#102030"})", hex("#102030"), 1},
        {"a gradient is gray",
         R"("stroke": true, "strokeColor": {"gradient": true, "start": "top", "end": "bottom", "value": "#102030-#FFFFFF"})",
         Color::gray, 1},
        {"a colour with modifiers is gray",
         R"("stroke": true, "strokeColor": {"value": "#102030", "modifiers": [{"type": "opacity", "opacity": 1}]})",
         Color::gray, 1},
        {"a width", R"("stroke": true, "lineWidth": 3)", Color::gray, 3},
        {"in single precision", R"("stroke": true, "lineWidth": 0.1)", Color::gray, double{0.1F}},
        {"a width of nothing", R"("stroke": true, "lineWidth": 0)", Color::gray, 0},
        {"a negative one", R"("stroke": true, "lineWidth": -2)", Color::gray, -2},
        {"a word", R"("stroke": true, "lineWidth": "thick")", Color::gray, 1},
        {"null", R"("stroke": true, "lineWidth": null)", Color::gray, 1},
        {"the fill is left out", R"("stroke": true, "fillColor": {"value": "#102030"})", Color::gray, 1},
        {"and cannot fail", R"("stroke": true, "fillColor": {"value": "none"})", Color::gray, 1},
        {"everything in the model",
         R"("stroke": "{{initServerParam.yes}}", "strokeColor": {"value": "{{initServerParam.red}}"}, "lineWidth": "{{initServerParam.width}}")",
         hex("#50FF0000"), 2.5},
    };
    for (const auto& shape : shapes) {
        for (const auto& row : rows) {
            SCOPED_TRACE(std::string(shape.type) + ": " + row.why);
            const AnyView view = drawnShape(shape.type, std::string(shape.members) + ", " + row.members, model);
            const StrokedShape* stroked = view.as<StrokedShape>();
            ASSERT_NE(stroked, nullptr);
            EXPECT_EQ(stroked->shape, shape.outline);
            EXPECT_EQ(std::get<Color>(stroked->stroke), row.color);
            EXPECT_EQ(stroked->lineWidth, row.width);
            EXPECT_EQ(stroked->lineCap, LineCap::butt);
            EXPECT_EQ(stroked->lineJoin, LineJoin::miter);
            EXPECT_EQ(stroked->miterLimit, 10);
        }
    }
}

TEST(ShapeNodes, AreFilled) {
    const struct {
        const char* why;
        const char* members;
        Color color;
    } rows[] = {
        {"a colour", R"("fillColor": {"value": "#102030"})", hex("#102030")},
        {"two", R"("fillColor": {"value": "#102030", "dark": "#FFFFFF"})",
         *dynamicColor(hex("#102030"), hex("#FFFFFF"))},
        {"a gradient is gray",
         R"("fillColor": {"gradient": true, "start": "top", "end": "bottom", "value": "#102030-#FFFFFF"})",
         Color::gray},
        {"a colour with modifiers is gray", R"("fillColor": {"value": "#102030", "modifiers": [{"type": "clipped"}]})",
         Color::gray},
        {"a stroke that is none, whose colour cannot fail",
         R"("stroke": false, "strokeColor": {"value": "none"}, "fillColor": {"value": "#102030"})", hex("#102030")},
        {"a word does not stroke", R"("stroke": "yes", "fillColor": {"value": "#102030"})", hex("#102030")},
    };
    for (const auto& shape : shapes) {
        for (const auto& row : rows) {
            SCOPED_TRACE(std::string(shape.type) + ": " + row.why);
            const AnyView view = drawnShape(shape.type, std::string(shape.members) + ", " + row.members);
            const FilledShape* filled = view.as<FilledShape>();
            ASSERT_NE(filled, nullptr);
            EXPECT_EQ(filled->shape, shape.outline);
            EXPECT_EQ(std::get<Color>(filled->fill), row.color);
        }
    }
}

TEST(ShapeNodes, HaveCorners) {
    const auto rounded = [](double radius, RoundedCornerStyle style = RoundedCornerStyle::circular) {
        return Shape(RoundedRectangle{radius, style});
    };
    const struct {
        const char* why;
        const char* type;
        const char* members;
        Shape outline;
    } rows[] = {
        {"circular ones", "roundedRectangle", R"("cornerRadius": 12)", rounded(12)},
        {"circular by name", "roundedRectangle", R"("cornerRadius": 12, "style": "circular")", rounded(12)},
        {"continuous ones", "roundedRectangle", R"("cornerRadius": 12, "style": "continuous")",
         rounded(12, RoundedCornerStyle::continuous)},
        {"an unknown style", "roundedRectangle", R"("cornerRadius": 12, "style": "Continuous")", rounded(12)},
        {"no style", "roundedRectangle", R"("cornerRadius": 12, "style": null)", rounded(12)},
        {"a radius as text", "roundedRectangle", R"("cornerRadius": "7.5")", rounded(7.5)},
        {"an unbound radius", "roundedRectangle", R"("cornerRadius": "{{initServerParam.none}}")", rounded(0)},
        {"a radius below nought", "roundedRectangle", R"("cornerRadius": -4)", rounded(-4)},
        {"continuous ends", "capsule", R"("style": "continuous")", Capsule{RoundedCornerStyle::continuous}},
        {"ends without a style", "capsule", R"("style": "other")", Capsule{}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(bareShape(drawnShape(row.type, std::string(", ") + row.members)), row.outline);
    }
}

TEST(ShapeNodes, Fail) {
    const auto failure = [](std::string_view type, std::string_view members) {
        return failureOf([&] { return drawnShape(type, members); });
    };
    for (const auto& shape : shapes) {
        SCOPED_TRACE(shape.type);
        const std::string members = shape.members;
        EXPECT_EQ(failure(shape.type, members + R"(, "fillColor": {"value": "pale"})"),
                  "ColorNode: invalid color: pale");
        EXPECT_EQ(failure(shape.type, members + R"(, "stroke": true, "strokeColor": {"value": "pale"})"),
                  "ColorNode: invalid color: pale");
        EXPECT_EQ(failure(shape.type, members + R"(, "fillColor": {"gradient": true, "value": "#FFFFFF"})"),
                  "ColorNode: gradient must set start and end");
        EXPECT_TRUE(failure(shape.type, members + R"(, "fillColor": "#FFFFFF")")
                        .starts_with("typeMismatch at nodes.main.fillColor"));
        EXPECT_TRUE(failure(shape.type, members + R"(, "strokeColor": {})")
                        .starts_with("keyNotFound at nodes.main.strokeColor"));
    }
    EXPECT_TRUE(failure("roundedRectangle", R"(, "style": [])").starts_with("keyNotFound at nodes.main"))
        << "the radius is required, and read first";
    EXPECT_TRUE(failure("roundedRectangle", R"(, "stroke": [], "cornerRadius": [])")
                    .starts_with("typeMismatch at nodes.main.cornerRadius"));
}

TEST(ShapeNodes, BindInTheOrderOfTheirKeys) {
    const std::string expressions = R"(, "fillColor": {"value": "{{initServerParam.fillColor}}"},
        "strokeColor": {"value": "{{initServerParam.strokeColor}}"}, "lineWidth": "{{initServerParam.lineWidth}}",
        "stroke": "{{initServerParam.stroke}}", "style": "{{initServerParam.style}}",
        "cornerRadius": "{{initServerParam.cornerRadius}}")";
    const auto failure = [&](const std::string& model) {
        return failureOf([&] { return drawnShape("roundedRectangle", expressions, "{" + model + "}"); });
    };
    std::string model;
    const std::vector<std::pair<std::string, std::string>> keys{
        {"cornerRadius", "3"}, {"style", "\"continuous\""},   {"stroke", "false"},
        {"lineWidth", "1"},    {"strokeColor", "\"102030\""}, {"fillColor", "\"102030\""}};
    for (const auto& [key, value] : keys) {
        EXPECT_EQ(failure(model), "ResolveExpression: key path not found in model: [\"" + key + "\"]");
        if (!model.empty()) model += ", ";
        model += "\"" + key + "\": ";
        model += value;
    }
    EXPECT_EQ(failure(model), "");
}

TEST(ShapeNodes, ApplyTheirModifiers) {
    for (const auto& shape : shapes) {
        SCOPED_TRACE(shape.type);
        const AnyView view =
            drawnShape(shape.type, std::string(shape.members) +
                                       R"(, "fillColor": {"value": "#102030"}, "modifiers": [{"type": "clipped"}])");
        ASSERT_NE(view.as<Clipped>(), nullptr);
        EXPECT_NE(view.as<Clipped>()->content.as<FilledShape>(), nullptr);
    }
}

}  // namespace
}  // namespace tavrin
