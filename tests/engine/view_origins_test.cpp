// SPDX-License-Identifier: MIT
#include "tavrin/dsl/view_origins.h"

#include <gtest/gtest.h>

#include "tavrin/tavrin.h"

namespace tavrin {
namespace {

/// Each view of a tree in pre-order: its name and where it comes from.
std::vector<std::string> originsOf(std::string_view document, std::string_view model = "{}") {
    Context context;
    context.recordsOrigins = true;
    const AnyView root = TavrinEngine().loadView(document, model, context);
    std::vector<std::string> lines;
    std::function<void(const AnyView&)> list = [&](const AnyView& view) {
        const CodingPath* const way = context.origins()->find(view);
        lines.push_back(std::string(view.box().name()) + " " + (way ? toText(*way) : "nowhere"));
        view.box().forEachInside(list);
    };
    list(root);
    return lines;
}

using Lines = std::vector<std::string>;

TEST(ViewOrigins, NameTheNodeAndItsModifiers) {
    EXPECT_EQ(originsOf(R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [
                              {"type": "text", "content": "a"},
                              {"type": "text", "content": "{{initServerParam.b}}", "modifiers": [
                                {"type": "zIndex", "zIndex": 1}, {"type": "opacity", "opacity": 0.5}]}]}}})",
                        R"({"b": "B"})"),
              (Lines{"VStack nodes.main", "Text nodes.main.children[0]", "opacity nodes.main.children[1].modifiers[1]",
                     "zIndex nodes.main.children[1].modifiers[0]", "Text nodes.main.children[1]"}));
}

TEST(ViewOrigins, LeadThroughAReferenceToWhereTheNodeIsWritten) {
    EXPECT_EQ(originsOf(R"({"version": "1.0", "nodes": {
                              "main": {"type": "hstack", "children": [{"type": "node", "name": "row"},
                                                                      {"type": "node", "name": "row"}]},
                              "row": {"type": "text", "content": "row"}}})"),
              (Lines{"HStack nodes.main", "Text nodes.row", "Text nodes.row"}));
}

TEST(ViewOrigins, KnowBoundNodesThatAreHeldDirectly) {
    EXPECT_EQ(originsOf(R"({"version": "1.0", "nodes": {"main": {"type": "emptyView", "modifiers": [
                              {"type": "overlay", "view": {"type": "text", "content": "{{initServerParam.b}}"}}]}}})",
                        R"({"b": "B"})"),
              (Lines{"overlay nodes.main.modifiers[0]", "Text nodes.main.modifiers[0].view", "EmptyView nodes.main"}));
}

TEST(ViewOrigins, KnowTheAttachmentInsideAProgressView) {
    const Lines lines = originsOf(R"({"version": "1.1", "nodes": {"main": {"type": "progressView", "style": "linear",
                                        "value": 0.5, "lineWidth": 4, "attachment": {"position": "top",
                                        "view": {"type": "text", "content": "50 %"}}}}})");
    EXPECT_EQ(lines.front(), "ProgressView nodes.main");
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Text nodes.main.attachment.view"), lines.end());
}

TEST(ViewOrigins, AreOnlyNotedWhenAskedFor) {
    constexpr std::string_view document = R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}}})";
    Context context;
    static_cast<void>(TavrinEngine().loadView(document, std::nullopt, context));
    EXPECT_EQ(context.origins(), nullptr);
}

TEST(ViewOrigins, AreGoneAfterARenderThatFailed) {
    Context context;
    context.recordsOrigins = true;
    static_cast<void>(
        TavrinEngine().loadView(R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}}})", std::nullopt, context));
    EXPECT_NE(context.origins(), nullptr);
    EXPECT_THROW(
        static_cast<void>(TavrinEngine().loadView(
            R"({"version": "1.0", "nodes": {"main": {"type": "node", "name": "gone"}}})", std::nullopt, context)),
        TavrinError);
    EXPECT_EQ(context.origins(), nullptr);
}

}  // namespace
}  // namespace tavrin
