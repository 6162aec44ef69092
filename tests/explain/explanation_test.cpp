// SPDX-License-Identifier: MIT
#include "tavrin/platform/explain/explanation.h"

#include <numeric>

#include <gtest/gtest.h>

#include "tavrin/tavrin.h"
#include "tests/golden/golden_case.h"

// Documents with the sentences that explain them. `TAVRIN_UPDATE_GOLDENS=1` rewrites what is expected.

namespace tavrin {
namespace {

/// A document drawn in the medium widget at the beginning of 1970.
Explanation explained(std::string_view document, std::optional<std::string_view> model = std::nullopt) {
    Context context;
    context.recordsOrigins = true;
    context.date = Date();
    const AnyView view = TavrinEngine().loadView(document, model, context);
    RenderOptions options;
    options.recording = layout::Recording::placements;
    ImageRenderer renderer(view, options);
    return explainLayout(renderer.layoutTree(),
                         [&](const AnyView& explainedView) { return context.origins()->find(explainedView); });
}

std::vector<std::size_t> all(const Explanation& explanation) {
    std::vector<std::size_t> chosen(explanation.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
    return chosen;
}

TEST(Explanation, OfEachRule) {
    const auto folder = std::filesystem::path(TAVRIN_SOURCE_DIR) / "tests/explain/cases";
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".json") continue;
        SCOPED_TRACE(entry.path());
        ++count;
        const Explanation explanation = explained(readFile(entry.path()));
        const std::string text = outlineText(explanation) + "\n" + explanationText(explanation, all(explanation));
        auto expected = entry.path();
        expected.replace_extension(".txt");
        if (updatesGoldens())
            writeFile(expected, text);
        else
            EXPECT_EQ(text, readFile(expected));
    }
    EXPECT_GE(count, 10U);
}

TEST(Explanation, OfEveryGoldenCase) {
    for (const GoldenCase& golden : goldenCases()) {
        SCOPED_TRACE(golden.name());
        WidgetOptions options = golden.widgetOptions();
        options.trace = WidgetTrace::reasons;
        Widget widget = golden.widget(options);
        const Explanation explanation = widget.explanation();
        ASSERT_FALSE(explanation.empty());
        for (const ViewExplanation& view : explanation) {
            SCOPED_TRACE(view.title);
            EXPECT_EQ(view.frame.has_value(), !widget.layoutTree().node(view.node).absent);
            EXPECT_EQ(view.frame.has_value(), !view.whyProposed.empty());
            EXPECT_EQ(view.frame.has_value(), !view.whyAnswered.empty());
            EXPECT_EQ(view.frame.has_value(), !view.whyPlaced.empty());
        }
    }
}

TEST(Explanation, AsJSON) {
    const Explanation explanation = explained(
        R"({"version": "1.0", "nodes": {"main": {"type": "hstack", "spacing": 0, "children": [
              {"type": "emptyView"}, {"type": "spacer"}, {"type": "text", "content": "a \" b"}]}}})");
    const JSON parsed = JSON::parse(explanationJSON(explanation, all(explanation)));
    const JSON* const views = parsed.find("views");
    ASSERT_TRUE(views && views->find(std::int64_t{3}));
    const JSON& empty = *views->find(std::int64_t{1});
    EXPECT_EQ(empty.find("frame")->description(), "null");
    EXPECT_EQ(empty.find("because")->description(), "[]");
    const JSON& text = *views->find(std::int64_t{3});
    EXPECT_EQ(text.find("origin")->description(), "nodes.main.children[2]");
    EXPECT_EQ(text.find("title")->description(), "Text \"a \" b\"");
    EXPECT_EQ(text.find("depth")->description(), "1");
    EXPECT_EQ(text.find("share")->find("turn")->description(), "0");
    EXPECT_EQ(text.find("share")->find("of")->description(), "1");
    EXPECT_EQ(text.find("share")->find("yields")->description(), "false");
    EXPECT_EQ(text.find("share")->find("setAside")->description(), "8");
    EXPECT_EQ(text.find("share")->find("remainder")->description(), "330");
    EXPECT_EQ(text.find("proposed")->description(), "[330,158]");
}

TEST(Explanation, FindsViewsByTheirPath) {
    const Explanation explanation = explained(
        R"({"version": "1.0", "nodes": {
              "main": {"type": "vstack", "children": [
                {"type": "text", "content": "a", "modifiers": [{"type": "opacity", "opacity": 1}]},
                {"type": "node", "name": "my row"}, {"type": "node", "name": "my row"}]},
              "my row": {"type": "circle"}, "unused": {"type": "circle"}}})");
    // VStack, opacity, Text, and the two circles
    const struct {
        const char* why;
        const char* path;
        std::vector<std::size_t> found;
    } rows[] = {
        {"a node", "nodes.main.children[0]", {2}},
        {"a modifier", "nodes.main.children[0].modifiers[0]", {1}},
        {"a property: the view it belongs to", "nodes.main.children[0].content", {2}},
        {"a modifier's property", "nodes.main.children[0].modifiers[0].opacity", {1}},
        {"the nearest below a list", "nodes.main.children", {2}},
        {"the nearest below the root", "", {0, 3, 4}},
        {"each use of a node", "nodes[\"my row\"]", {3, 4}},
        {"where the node is referred to", "nodes.main.children[1].name", {0}},
        {"a node that is not drawn", "nodes.unused", {}},
        {"a name that only begins so", "nodes.mai", {}},
    };
    ASSERT_EQ(explanation.size(), 5U);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(viewsAt(explanation, row.path), row.found);
    }
}

}  // namespace
}  // namespace tavrin
