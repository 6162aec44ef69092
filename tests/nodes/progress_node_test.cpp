// SPDX-License-Identifier: MIT
#include "tavrin/nodes/progress_node.h"

#include <gtest/gtest.h>

#include "tavrin/nodes/progress_styles.h"
#include "tavrin/platform/ui/views.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

using Ring = ProgressView<CircularProgressViewStyle>;
using Bar = ProgressView<LinearProgressViewStyle>;

AnyView progress(std::string_view members, std::optional<std::string_view> model = std::nullopt) {
    return renderedNode("{\"type\": \"progressView\", " + std::string(members) + "}", model);
}

TEST(ProgressNode, DefaultsOfARing) {
    const AnyView view = progress(R"("style": "circular", "value": 0.25, "lineWidth": "6", "lineCornerRadius": 3)");
    const auto* ring = view.as<Ring>();
    ASSERT_NE(ring, nullptr);
    EXPECT_EQ(ring->value, 0.25);
    EXPECT_EQ(ring->total, 1);
    EXPECT_EQ(ring->style.lineWidth, 6);
    EXPECT_EQ(ring->style.lineCap, ProgressNode::LineCap::round);
    EXPECT_FALSE(ring->style.attachment || ring->style.color || ring->style.background || ring->style.flip);
}

TEST(ProgressNode, EveryKeyOfABar) {
    const AnyView view = progress(
        R"("style": "linear", "value": "{{initServerParam.v}}", "lineWidth": 4, "lineCornerRadius": 1.5,
           "lineCap": "butt", "flip": true, "color": {"value": "{{initServerParam.c}}"},
           "background": {"value": "#00FF00"},
           "attachment": {"position": "{{initServerParam.p}}", "view": {"type": "text", "content": "{{initServerParam.v}}"}})",
        R"({"v": 0.5, "c": "#80FF0000", "p": "bottom"})");
    const auto* bar = view.as<Bar>();
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->value, 0.5);
    EXPECT_EQ(bar->style.lineCornerRadius, 1.5F);
    EXPECT_EQ(bar->style.lineCap, ProgressNode::LineCap::butt);
    EXPECT_TRUE(bar->style.flip);
    EXPECT_EQ(bar->style.attachmentPosition, ProgressAttachment::Position::bottom);
    ASSERT_TRUE(bar->style.attachment && bar->style.attachment->as<Text>());
    EXPECT_EQ(std::get<SharedText>(bar->style.attachment->as<Text>()->content), "0.5");
    ASSERT_TRUE(bar->style.color && bar->style.color->as<Color>());
    EXPECT_EQ(bar->style.color->as<Color>()->resolved(Appearance::light).opacity, 0.5)
        << "a model's alpha is converted";
}

TEST(ProgressNode, FailsInTheOrderOfItsKeys) {
    const struct {
        const char* why;
        const char* members;
        const char* failure;
    } rows[] = {
        {"modifiers are read first", R"("modifiers": 1)", "typeMismatch at nodes.main.modifiers"},
        {"then the style", R"("value": [])", "keyNotFound at nodes.main: "},
        {"the value", R"("style": "circular", "value": [])", "typeMismatch at nodes.main.value"},
        {"the colour", R"("style": "circular", "value": 1, "color": {})", "keyNotFound at nodes.main.color"},
        {"the track", R"("style": "circular", "value": 1, "background": {})", "keyNotFound at nodes.main.background"},
        {"the width", R"("style": "circular", "value": 1, "attachment": {})", "keyNotFound at nodes.main: "},
        {"an attachment's place", R"("style": "circular", "value": 1, "lineWidth": 1, "attachment": {"view": 1})",
         "keyNotFound at nodes.main.attachment: "},
        {"an attachment's view",
         R"("style": "circular", "value": 1, "lineWidth": 1, "attachment": {"position": "top"})",
         "keyNotFound at nodes.main.attachment: "},
        {"an unknown style", R"("style": "Circular", "value": 1, "lineWidth": 1)", "conversion at nodes.main.style"},
        {"a word is no width", R"("style": "circular", "value": 1, "lineWidth": "wide")",
         "conversion at nodes.main.lineWidth"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string failure = failureOf([&] { return progress(row.members); });
        EXPECT_TRUE(failure.starts_with(row.failure)) << failure;
    }
}

TEST(ProgressNode, BindsItsOwnValuesFirst) {
    const std::string members =
        R"("style": "{{initServerParam.style}}", "value": "{{initServerParam.value}}",
           "color": {"value": "{{initServerParam.color}}"}, "background": {"value": "{{initServerParam.background}}"},
           "lineWidth": "{{initServerParam.lineWidth}}", "lineCornerRadius": "{{initServerParam.lineCornerRadius}}",
           "lineCap": "{{initServerParam.lineCap}}", "flip": "{{initServerParam.flip}}",
           "attachment": {"position": "{{initServerParam.position}}",
                          "view": {"type": "text", "content": "{{initServerParam.view}}"}})";
    const std::pair<const char*, const char*> order[] = {
        {"style", "\"linear\""}, {"value", "0.5"}, {"lineWidth", "4"},       {"lineCornerRadius", "2"},
        {"lineCap", "\"butt\""}, {"flip", "true"}, {"color", "\"#FF0000\""}, {"background", "\"#FF0000\""},
        {"position", "\"top\""}, {"view", "1"}};
    std::string model;
    for (const auto& [key, value] : order) {
        EXPECT_EQ(failureOf([&] { return progress(members, "{" + model + "}"); }),
                  "ResolveExpression: key path not found in model: [\"" + std::string(key) + "\"]");
        model += (model.empty() ? "\"" : ", \"") + std::string(key) + "\": " + value;
    }
    EXPECT_NE(progress(members, "{" + model + "}").as<Bar>(), nullptr);
}

TEST(ProgressNode, ReadsWhatIsNotBoundAsNothing) {
    const AnyView view = progress(R"("style": "{{initServerParam.a}}", "value": "{{initServerParam.a}}",
        "lineWidth": "{{initServerParam.a}}", "lineCap": "{{initServerParam.a}}", "flip": "{{initServerParam.a}}")");
    const auto* bar = view.as<Bar>();
    ASSERT_NE(bar, nullptr) << "a style that is not known is a bar";
    EXPECT_EQ(bar->value, 0);
    EXPECT_EQ(bar->style.lineWidth, 0);
    EXPECT_EQ(bar->style.lineCap, ProgressNode::LineCap::round);
    EXPECT_FALSE(bar->style.flip);
}

TEST(ProgressNode, PassesErrorsOnInTheOrderOfDrawing) {
    const std::string_view start = R"("style": "circular", "value": 1, "lineWidth": 1)";
    const std::string_view color = R"(, "color": {"value": "a"})";
    const std::string_view background = R"(, "background": {"value": "b"})";
    const std::string_view attachment =
        R"(, "attachment": {"position": "top", "view": {"type": "color", "value": "c"}})";
    const auto failure = [&](std::initializer_list<std::string_view> parts) {
        std::string members(start);
        for (const std::string_view part : parts) members += part;
        return failureOf([&] { return progress(members); });
    };
    EXPECT_EQ(failure({color, background, attachment}), "ColorNode: invalid color: a");
    EXPECT_EQ(failure({background, attachment}), "ColorNode: invalid color: b");
    EXPECT_EQ(failure({attachment}), "ColorNode: invalid color: c");
}

TEST(ProgressNode, CountsWhatItHoldsAsNested) {
    std::string members = R"("style": "circular", "value": 1, "lineWidth": 1)";
    const auto nesting = [&] { return progress(members).box().nesting; };
    EXPECT_EQ(nesting(), 1U);
    members += R"(, "attachment": {"position": "top", "view": {"type": "circle", "modifiers": [{"type": "clipped"}]}})";
    EXPECT_EQ(nesting(), 3U);
}

}  // namespace
}  // namespace tavrin
