// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/layout_modifiers.h"

#include <gtest/gtest.h>

#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/modifiers/modified.h"

namespace tavrin {
namespace {

TEST(FrameModifier, AppliesBothFrames) {
    const AnyView view = modified(R"({"type": "frame", "width": 100})");
    const FlexibleFrame* outer = view.as<FlexibleFrame>();
    ASSERT_NE(outer, nullptr);
    const FixedFrame* inner = outer->content.as<FixedFrame>();
    ASSERT_NE(inner, nullptr);
    EXPECT_NE(inner->content.as<Spacer>(), nullptr);
    EXPECT_EQ(inner->width, 100.0);
    EXPECT_EQ(inner->height, std::nullopt);
    EXPECT_EQ(inner->alignment, Alignment::center);
    EXPECT_EQ(outer->minWidth, std::nullopt);
    EXPECT_EQ(outer->maxWidth, std::nullopt);
    EXPECT_EQ(outer->minHeight, std::nullopt);
    EXPECT_EQ(outer->maxHeight, std::nullopt);
    EXPECT_EQ(outer->alignment, Alignment::center);
    ASSERT_NE(modified(R"({"type": "frame"})").as<FlexibleFrame>(), nullptr) << "also when nothing is given";
    EXPECT_NE(modified(R"({"type": "frame"})").as<FlexibleFrame>()->content.as<FixedFrame>(), nullptr);
}

TEST(FrameModifier, ReadsEveryLength) {
    const char* const literals = R"({"type": "frame", "width": 1, "height": "2", "minWidth": 3.5, "maxWidth": 4,
                                    "minHeight": 5, "maxHeight": "inf", "alignment": "bottomLeading"})";
    const char* const expressions =
        R"({"type": "frame", "width": "{{initServerParam.a}}", "height": "{{initServerParam.b}}",
        "minWidth": "{{initServerParam.c}}", "maxWidth": "{{initServerParam.d}}", "minHeight": "{{initServerParam.e}}",
        "maxHeight": "{{initServerParam.f}}", "alignment": "{{initServerParam.g}}"})";
    const char* const model = R"({"a": 1, "b": "2", "c": 3.5, "d": 4, "e": 5, "f": "inf", "g": "bottomLeading"})";
    for (const AnyView& view : {modified(literals), modified(expressions, model)}) {
        const FlexibleFrame& outer = *view.as<FlexibleFrame>();
        const FixedFrame& inner = *outer.content.as<FixedFrame>();
        EXPECT_EQ(inner.width, 1);
        EXPECT_EQ(inner.height, 2);
        EXPECT_EQ(outer.minWidth, 3.5);
        EXPECT_EQ(outer.maxWidth, 4);
        EXPECT_EQ(outer.minHeight, 5);
        EXPECT_EQ(outer.maxHeight, std::numeric_limits<double>::infinity());
        EXPECT_EQ(inner.alignment, Alignment::bottomLeading);
        EXPECT_EQ(outer.alignment, Alignment::bottomLeading);
    }
    const AnyView unbound = modified(expressions);
    EXPECT_EQ(unbound.as<FlexibleFrame>()->maxHeight, std::nullopt) << "without a model nothing is given";
    EXPECT_EQ(unbound.as<FlexibleFrame>()->alignment, Alignment::center);
    EXPECT_EQ(modified(R"({"type": "frame", "alignment": "Top"})").as<FlexibleFrame>()->alignment, Alignment::center);
    EXPECT_EQ(modified(R"({"type": "frame", "minWidth": 9, "maxWidth": 1})").as<FlexibleFrame>()->maxWidth, 1)
        << "not checked here";
    EXPECT_EQ(modified(R"({"type": "frame", "minWidth": 0.1})").as<FlexibleFrame>()->minWidth, double{0.1f})
        << "single precision";
}

TEST(FrameModifier, BindsInDeclarationOrder) {
    const std::vector<std::string> keys{"width",     "height",    "minWidth", "maxWidth",
                                        "minHeight", "maxHeight", "alignment"};
    std::string members;
    for (const std::string& key : keys) members = ", \"" + key + "\": \"{{initServerParam." + key + "}}\"" + members;
    std::string model = "{";
    for (const std::string& key : keys) {
        EXPECT_EQ(failureOf([&] { return modified("{\"type\": \"frame\"" + members + "}", model + "}"); }),
                  "ResolveExpression: key path not found in model: [\"" + key + "\"]");
        model += (model.size() > 1 ? ", \"" : "\"") + key + "\": 1";
    }
    EXPECT_EQ(failureOf([&] { return modified("{\"type\": \"frame\"" + members + "}", model + "}"); }), "");
}

TEST(PaddingModifier, PadsTheNamedEdges) {
    const struct {
        const char* why;
        const char* members;
        Edges edges;
        double length;
    } rows[] = {
        {"no edges named: all", R"("length": 3)", Edges::all, 3},
        {"null: all", R"("edges": null, "length": 3)", Edges::all, 3},
        {"an empty list: none", R"("edges": [], "length": 3)", {}, 3},
        {"one", R"("edges": ["top"], "length": 3)", {.top = true}, 3},
        {"each", R"("edges": ["bottom", "leading"], "length": 3)", {.leading = true, .bottom = true}, 3},
        {"twice is once", R"("edges": ["trailing", "trailing"], "length": 3)", {.trailing = true}, 3},
        {"all adds all", R"("edges": ["top", "all"], "length": 3)", Edges::all, 3},
        {"the order does not matter", R"("edges": ["all", "top"], "length": 3)", Edges::all, 3},
        {"a negative length", R"("length": -2.5)", Edges::all, -2.5},
        {"a length as text", R"("length": "4")", Edges::all, 4},
        {"an expression", R"("length": "{{initServerParam.l}}")", Edges::all, 8},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = modified("{\"type\": \"padding\", " + std::string(row.members) + "}", R"({"l": 8})");
        ASSERT_NE(view.as<Padding>(), nullptr);
        EXPECT_EQ(view.as<Padding>()->edges, row.edges);
        EXPECT_EQ(view.as<Padding>()->length, row.length);
        EXPECT_NE(view.as<Padding>()->content.as<Spacer>(), nullptr);
    }
    EXPECT_EQ(modified(R"({"type": "padding", "length": "{{initServerParam.l}}"})").as<Padding>()->length, 0)
        << "unbound";
}

TEST(OffsetModifier, Moves) {
    const AnyView view = modified(R"({"type": "offset", "x": 1.5, "y": "{{initServerParam.y}}"})", R"({"y": "-2"})");
    ASSERT_NE(view.as<Offset>(), nullptr);
    EXPECT_EQ(view.as<Offset>()->x, 1.5);
    EXPECT_EQ(view.as<Offset>()->y, -2);
    EXPECT_EQ(modified(R"({"type": "offset", "x": 1, "y": "{{initServerParam.y}}"})").as<Offset>()->y, 0) << "unbound";
    EXPECT_EQ(failureOf([] {
                  return modified(R"({"type": "offset", "y": "{{initServerParam.y}}", "x": "{{initServerParam.x}}"})",
                                  "{}");
              }),
              "ResolveExpression: key path not found in model: [\"x\"]");
}

TEST(AspectRatioModifier, KeepsOrSetsTheRatio) {
    const struct {
        const char* why;
        const char* members;
        std::optional<double> ratio;
        ContentMode mode;
    } rows[] = {
        {"fill without a ratio", R"("contentMode": "fill")", std::nullopt, ContentMode::fill},
        {"fit with one", R"("contentMode": "fit", "aspectRatio": 1.5)", 1.5, ContentMode::fit},
        {"a ratio that is no number", R"("contentMode": "fit", "aspectRatio": "wide")", std::nullopt, ContentMode::fit},
        {"expressions", R"("contentMode": "{{initServerParam.m}}", "aspectRatio": "{{initServerParam.r}}")", 2,
         ContentMode::fill},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view =
            modified("{\"type\": \"aspectRatio\", " + std::string(row.members) + "}", R"({"m": "fill", "r": 2})");
        ASSERT_NE(view.as<AspectRatio>(), nullptr);
        EXPECT_EQ(view.as<AspectRatio>()->ratio, row.ratio);
        EXPECT_EQ(view.as<AspectRatio>()->contentMode, row.mode);
    }
    EXPECT_EQ(
        modified(R"({"type": "aspectRatio", "contentMode": "{{initServerParam.m}}"})").as<AspectRatio>()->contentMode,
        ContentMode::fit)
        << "unbound";
    EXPECT_EQ(failureOf([] {
                  return modified(R"({"type": "aspectRatio", "contentMode": "{{initServerParam.m}}"})",
                                  R"({"m": "Fill"})");
              }),
              "ResolveExpression: unable to convert value Fill to AspectRatioModifier.ContentMode");
}

TEST(LineLimitModifier, SetsOrRemovesTheLimit) {
    const struct {
        const char* why;
        const char* members;
        std::optional<std::int64_t> number;
    } rows[] = {
        {"absent", "", std::nullopt},
        {"a number", R"(, "number": 3)", 3},
        {"a whole number", R"(, "number": 3.0)", 3},
        {"as text", R"(, "number": "2")", 2},
        {"a word", R"(, "number": "two")", std::nullopt},
        {"a fraction", R"(, "number": 2.5)", std::nullopt},
        {"text with a point", R"(, "number": "2.0")", std::nullopt},
        {"below one is kept here", R"(, "number": -1)", -1},
        {"beyond 64 bits", R"(, "number": 9223372036854775808)", std::nullopt},
        {"an expression", R"(, "number": "{{initServerParam.n}}")", 4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = modified("{\"type\": \"lineLimit\"" + std::string(row.members) + "}", R"({"n": "4"})");
        ASSERT_NE(view.as<LineLimit>(), nullptr);
        EXPECT_EQ(view.as<LineLimit>()->number, row.number);
    }
}

TEST(ZIndexModifier, SetsTheIndex) {
    EXPECT_EQ(modified(R"({"type": "zIndex", "zIndex": 0.1})").as<ZIndex>()->value, double{0.1f});
    EXPECT_EQ(modified(R"({"type": "zIndex", "zIndex": "{{initServerParam.z}}"})").as<ZIndex>()->value, 0) << "unbound";
    EXPECT_EQ(modified(R"({"type": "zIndex", "zIndex": "{{initServerParam.z}}"})", R"({"z": -3})").as<ZIndex>()->value,
              -3);
}

TEST(LayoutModifiers, FailToDecode) {
    const struct {
        const char* why;
        const char* json;
        const char* failure;
    } rows[] = {
        {"padding needs a length", R"({"type": "padding", "edges": []})",
         "keyNotFound at : the key \"length\" is missing"},
        {"edges before the length", R"({"type": "padding", "edges": "top"})",
         "typeMismatch at edges: expected an array, found a string"},
        {"an unknown edge", R"({"type": "padding", "edges": ["top", "left"], "length": 1})",
         "dataCorrupted at edges[1]: "},
        {"an edge that is no word", R"({"type": "padding", "edges": [1], "length": 1})",
         "typeMismatch at edges[0]: expected a string, found a number"},
        {"edges are no expression", R"({"type": "padding", "edges": "{{initServerParam.e}}", "length": 1})",
         "typeMismatch at edges: expected an array, found a string"},
        {"offset needs x", R"({"type": "offset", "y": 1})", "keyNotFound at : the key \"x\" is missing"},
        {"offset needs y", R"({"type": "offset", "x": 1})", "keyNotFound at : the key \"y\" is missing"},
        {"x is looked at first", R"({"type": "offset"})", "keyNotFound at : the key \"x\" is missing"},
        {"offset by text", R"({"type": "offset", "x": "abc", "y": 1})",
         "conversion at x: cannot convert \"abc\" to Float"},
        {"aspectRatio needs a mode", R"({"type": "aspectRatio", "aspectRatio": 1})",
         "keyNotFound at : the key \"contentMode\" is missing"},
        {"the ratio is looked at first", R"({"type": "aspectRatio", "aspectRatio": []})",
         "typeMismatch at aspectRatio: expected a number or an expression, found an array"},
        {"an unknown mode", R"({"type": "aspectRatio", "contentMode": "stretch"})",
         "conversion at contentMode: cannot convert \"stretch\" to AspectRatioModifier.ContentMode"},
        {"zIndex needs its index", R"({"type": "zIndex"})", "keyNotFound at : the key \"zIndex\" is missing"},
        {"null is no index", R"({"type": "zIndex", "zIndex": null})",
         "valueNotFound at zIndex: expected a number or an expression, found null"},
        {"a boolean is no index", R"({"type": "zIndex", "zIndex": true})",
         "typeMismatch at zIndex: expected a number or an expression, found a boolean"},
        {"a word is no index", R"({"type": "zIndex", "zIndex": "abc"})",
         "conversion at zIndex: cannot convert \"abc\" to Float"},
        {"a frame's width", R"({"type": "frame", "width": {}})",
         "typeMismatch at width: expected a number or an expression, found an object"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string failure = failureOf([&] { return modifierFrom(row.json); });
        EXPECT_TRUE(failure.starts_with(row.failure) && !failure.empty()) << failure;
    }
}

TEST(LayoutModifiers, DeclareTheFirstVersion) {
    for (const char* json :
         {R"({"type": "frame"})", R"({"type": "padding", "length": 1})", R"({"type": "offset", "x": 1, "y": 1})",
          R"({"type": "aspectRatio", "contentMode": "fit"})", R"({"type": "lineLimit"})",
          R"({"type": "zIndex", "zIndex": 1})"})
        EXPECT_EQ(modifierFrom(json).version(), DSLVersion::v1) << json;
}

TEST(EdgeDSL, HasItsKeywords) {
    EXPECT_TRUE(std::ranges::equal(Keywords<EdgeDSL>::raw,
                                   std::array<std::string_view, 5>{"top", "bottom", "leading", "trailing", "all"}));
    EXPECT_EQ(Keywords<EdgeDSL>::defaultCase, EdgeDSL::all);
    EXPECT_EQ(Keywords<AspectRatioModifier::ContentMode>::defaultCase, AspectRatioModifier::ContentMode::fit);
}

}  // namespace
}  // namespace tavrin
