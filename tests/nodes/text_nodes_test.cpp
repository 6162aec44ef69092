// SPDX-License-Identifier: MIT
#include "tavrin/nodes/text_nodes.h"

#include <gtest/gtest.h>

#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

using Weight = Font::Weight;

TEST(FontWeight, MapsToThePlatform) {
    const struct {
        const char* why;
        std::optional<FontWeight> weight;
        std::optional<Weight> text;
        Weight font;
    } rows[] = {
        {"regular", FontWeight::regular, Weight::regular, Weight::regular},
        {"semibold", FontWeight::semibold, Weight::semibold, Weight::semibold},
        {"bold", FontWeight::bold, Weight::bold, Weight::bold},
        {"none", std::nullopt, std::nullopt, Weight::regular},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(textWeight(row.weight), row.text);
        EXPECT_EQ(fontWeight(row.weight), row.font);
    }
    EXPECT_EQ(static_cast<int>(FontWeight::bold), 2);
    EXPECT_EQ(sizeof(FontWeight), 1u);
}

TEST(FontWeight, IsAKeywordInJSON) {
    EXPECT_EQ(JSONDecoder().decode<FontWeight>("\"semibold\""), FontWeight::semibold);
    EXPECT_EQ(failureOf([] { return JSONDecoder().decode<FontWeight>("\"bolt\""); }),
              "dataCorrupted at : \"bolt\" is not a FontWeight; did you mean \"bold\"?");
    EXPECT_EQ(DSLJSONEncoder().encode(FontWeight::bold), "\"bold\"");
}

TEST(TextNode, Draws) {
    const struct {
        const char* why;
        const char* members;
        const char* content;
        std::optional<Font> font;
        std::optional<Weight> weight;
    } rows[] = {
        {"content alone", R"("content": "Hi")", "Hi", std::nullopt, std::nullopt},
        {"a size", R"("content": "", "fontSize": 12.5)", "", Font::system(12.5), std::nullopt},
        {"a size of zero is a size", R"("content": "a", "fontSize": 0)", "a", Font::system(0), std::nullopt},
        {"a size below zero too", R"("content": "a", "fontSize": -3)", "a", Font::system(-3), std::nullopt},
        {"a size that is none", R"("content": "a", "fontSize": "abc")", "a", std::nullopt, std::nullopt},
        {"single precision", R"("content": "a", "fontSize": 0.1)", "a", Font::system(double{0.1f}), std::nullopt},
        {"a weight", R"("content": "a", "fontWeight": "semibold")", "a", std::nullopt, Weight::semibold},
        {"a weight with a capital is none", R"("content": "a", "fontWeight": "Bold")", "a", std::nullopt, std::nullopt},
        {"an unknown weight", R"("content": "a", "fontWeight": "medium")", "a", std::nullopt, std::nullopt},
        {"size and weight", R"("content": "a", "fontSize": 9, "fontWeight": "bold")", "a", Font::system(9),
         Weight::bold},
        {"a number as content", R"("content": 2.50)", "2.5", std::nullopt, std::nullopt},
        {"expressions",
         R"("content": "{{initServerParam.t}}", "fontSize": "{{initServerParam.s}}", "fontWeight": "{{initServerParam.w}}")",
         "Rain", Font::system(7), Weight::bold},
        {"a weight in the model that is none", R"("content": "a", "fontWeight": "{{initServerParam.t}}")", "a",
         std::nullopt, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = renderedNode("{\"type\": \"text\", " + std::string(row.members) + "}",
                                          R"({"t": "Rain", "s": 7, "w": "bold"})");
        const Text* text = view.as<Text>();
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(std::get<SharedText>(text->content), row.content);
        EXPECT_EQ(text->font, row.font);
        EXPECT_EQ(text->fontWeight, row.weight);
    }
}

TEST(TextNode, WithoutAModelExpressionsReadAsText) {
    const AnyView view = renderedNode(
        R"({"type": "text", "content": "{{initServerParam.t}}", "fontSize": "{{initServerParam.s}}", "fontWeight": "{{initServerParam.w}}"})");
    EXPECT_EQ(std::get<SharedText>(view.as<Text>()->content), "{{initServerParam.t}}");
    EXPECT_EQ(view.as<Text>()->font, std::nullopt);
    EXPECT_EQ(view.as<Text>()->fontWeight, std::nullopt);
}

TEST(TextNode, BindsInOrder) {
    const auto failure = [](std::string_view model) {
        return failureOf([&] {
            return renderedNode(
                R"({"type": "text", "fontWeight": "{{initServerParam.w}}", "fontSize": "{{initServerParam.s}}", "content": "{{initServerParam.t}}"})",
                model);
        });
    };
    EXPECT_EQ(failure("{}"), "ResolveExpression: key path not found in model: [\"t\"]");
    EXPECT_EQ(failure(R"({"t": 1})"), "ResolveExpression: key path not found in model: [\"s\"]");
    EXPECT_EQ(failure(R"({"t": 1, "s": 1})"), "ResolveExpression: key path not found in model: [\"w\"]");
    EXPECT_EQ(failure(R"({"t": 1, "s": 1, "w": 1})"), "");
}

TEST(TextNode, AppliesItsModifiers) {
    const AnyView view =
        renderedNode(R"({"type": "text", "content": "a", "modifiers": [{"type": "zIndex", "zIndex": 1}]})");
    ASSERT_NE(view.as<ZIndex>(), nullptr);
    EXPECT_NE(view.as<ZIndex>()->content.as<Text>(), nullptr);
}

TEST(TimerNode, ChoosesItsFont) {
    const auto monospaced = [](double size, Weight weight) { return Font::monospacedDigitSystem(size, weight); };
    const struct {
        const char* why;
        const char* members;
        std::optional<Font> font;
        std::optional<Weight> weight;
    } rows[] = {
        {"nothing", "", std::nullopt, std::nullopt},
        {"digits of one width", R"(, "monospace": true)", monospaced(20, Weight::regular), std::nullopt},
        {"their weight stands twice", R"(, "monospace": true, "fontWeight": "bold")", monospaced(20, Weight::bold),
         Weight::bold},
        {"their size", R"(, "monospace": true, "fontSize": 30)", monospaced(30, Weight::regular), std::nullopt},
        {"a size alone", R"(, "fontSize": 30)", Font::system(30), std::nullopt},
        {"a size and a weight", R"(, "fontSize": 30, "fontWeight": "semibold")", Font::system(30), Weight::semibold},
        {"digits declined take the size along", R"(, "fontSize": 30, "monospace": false)", std::nullopt, std::nullopt},
        {"digits declined", R"(, "monospace": false)", std::nullopt, std::nullopt},
        {"as text", R"(, "monospace": "true")", monospaced(20, Weight::regular), std::nullopt},
        {"any other text is nothing", R"(, "fontSize": 30, "monospace": "False")", Font::system(30), std::nullopt},
        {"a number is nothing", R"(, "fontSize": 30, "monospace": 1)", Font::system(30), std::nullopt},
        {"a size that is none", R"(, "fontSize": "big", "monospace": true)", monospaced(20, Weight::regular),
         std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view = renderedNode("{\"type\": \"timer\"" + std::string(row.members) + "}");
        ASSERT_NE(view.as<Text>(), nullptr);
        EXPECT_EQ(view.as<Text>()->font, row.font);
        EXPECT_EQ(view.as<Text>()->fontWeight, row.weight);
    }
}

TEST(TimerNode, CountsFromItsTimestamp) {
    const struct {
        const char* why;
        const char* timestamp;
        double seconds;
    } rows[] = {
        {"present-day moments are multiples of 128 seconds", "1700000100", 1700000128},
        {"as text", "\"1700000100\"", 1700000128},
        {"an expression", "\"{{initServerParam.t}}\"", 1700000128},
        {"small moments are exact", "12.5", 12.5},
        {"zero is a moment", "0", 0},
        {"before 1970", "-60", -60},
        {"no number is the moment of drawing", "\"soon\"", 99},
        {"null too", "null", 99},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        Context context;
        context.date = Date{99};
        const std::string document =
            documentOf("{\"type\": \"timer\", \"timestamp\": " + std::string(row.timestamp) + "}");
        const AnyView view = TavrinEngine().loadView(document, R"({"t": 1700000100})", context);
        EXPECT_EQ(std::get<Date>(view.as<Text>()->content).secondsSince1970, row.seconds);
    }
}

TEST(TimerNode, DrawnByItselfCountsFromTheMomentToo) {
    Context context;
    context.date = Date{99};
    const AnyView view = TimerNode{}.render(context);
    EXPECT_EQ(std::get<Date>(view.as<Text>()->content).secondsSince1970, 99);
}

TEST(TimerNode, BindsInOrder) {
    const auto failure = [](std::string_view model) {
        return failureOf([&] {
            return renderedNode(
                R"({"type": "timer", "monospace": "{{initServerParam.m}}", "fontWeight": "{{initServerParam.w}}",
                                "fontSize": "{{initServerParam.s}}", "timestamp": "{{initServerParam.t}}"})",
                model);
        });
    };
    EXPECT_EQ(failure("{}"), "ResolveExpression: key path not found in model: [\"t\"]");
    EXPECT_EQ(failure(R"({"t": 1})"), "ResolveExpression: key path not found in model: [\"s\"]");
    EXPECT_EQ(failure(R"({"t": 1, "s": 1})"), "ResolveExpression: key path not found in model: [\"w\"]");
    EXPECT_EQ(failure(R"({"t": 1, "s": 1, "w": 1})"), "ResolveExpression: key path not found in model: [\"m\"]");
    EXPECT_EQ(failure(R"({"t": 1, "s": 1, "w": 1, "m": 1})"), "");
}

}  // namespace
}  // namespace tavrin
