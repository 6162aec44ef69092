// SPDX-License-Identifier: MIT
#include "tavrin/dsl/structure.h"

#include <gtest/gtest.h>

#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

std::string textOf(const AnyView& view) { return std::string(std::get<SharedText>(view.as<Text>()->content)); }

TEST(Stacks, MapTheirAlignmentAndSpacing) {
    const struct {
        const char* why;
        const char* members;
        HorizontalAlignment alignment;
        std::optional<double> spacing;
    } rows[] = {
        {"nothing given", "", HorizontalAlignment::center, std::nullopt},
        {"leading", R"(,"alignment": "leading")", HorizontalAlignment::leading, std::nullopt},
        {"center", R"(,"alignment": "center")", HorizontalAlignment::center, std::nullopt},
        {"trailing and a spacing", R"(,"alignment": "trailing", "spacing": 4)", HorizontalAlignment::trailing, 4},
        {"another stack's word is none", R"(,"alignment": "top")", HorizontalAlignment::center, std::nullopt},
        {"words are case-sensitive", R"(,"alignment": "Leading")", HorizontalAlignment::center, std::nullopt},
        {"spacing as text", R"(,"spacing": "2.5")", HorizontalAlignment::center, 2.5},
        {"spacing that is no number", R"(,"spacing": "wide")", HorizontalAlignment::center, std::nullopt},
        {"null", R"(,"spacing": null, "alignment": null)", HorizontalAlignment::center, std::nullopt},
        {"single precision", R"(,"spacing": 0.1)", HorizontalAlignment::center, double{0.1f}},
        {"an expression", R"(,"spacing": "{{initServerParam.s}}", "alignment": "{{initServerParam.a}}")",
         HorizontalAlignment::leading, 9},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView view =
            renderedNode("{\"type\": \"vstack\"" + std::string(row.members) + "}", R"({"s": 9, "a": "leading"})");
        ASSERT_NE(view.as<VStack>(), nullptr);
        EXPECT_EQ(view.as<VStack>()->alignment, row.alignment);
        EXPECT_EQ(view.as<VStack>()->spacing, row.spacing);
        EXPECT_TRUE(view.as<VStack>()->children.empty());
    }
}

TEST(Stacks, EachHasItsOwnAlignments) {
    const auto horizontal = [](const std::string& word) {
        return renderedNode(R"({"type": "hstack", "spacing": 0, "alignment": ")" + word + "\"}");
    };
    EXPECT_EQ(horizontal("top").as<HStack>()->alignment, VerticalAlignment::top);
    EXPECT_EQ(horizontal("center").as<HStack>()->alignment, VerticalAlignment::center);
    EXPECT_EQ(horizontal("bottom").as<HStack>()->alignment, VerticalAlignment::bottom);
    EXPECT_EQ(horizontal("leading").as<HStack>()->alignment, VerticalAlignment::center);
    EXPECT_EQ(horizontal("top").as<HStack>()->spacing, 0.0);
    EXPECT_EQ(renderedNode(R"({"type": "hstack"})").as<HStack>()->alignment, VerticalAlignment::center);
    for (const std::string_view word : Keywords<AlignmentDSL>::raw) {
        const AnyView view = renderedNode(R"({"type": "zstack", "alignment": ")" + std::string(word) + "\"}");
        EXPECT_EQ(name(view.as<ZStack>()->alignment), word);
    }
    EXPECT_EQ(renderedNode(R"({"type": "zstack"})").as<ZStack>()->alignment, Alignment::center);
    EXPECT_EQ(renderedNode(R"({"type": "zstack", "spacing": {}})").as<ZStack>()->alignment, Alignment::center)
        << "a zstack has no spacing: the key is ignored";
}

TEST(Stacks, KeepTheirChildrenInOrder) {
    for (const std::string type : {"vstack", "hstack", "zstack"}) {
        SCOPED_TRACE(type);
        const AnyView view =
            renderedNode("{\"type\": \"" + type + R"(", "modifiers": [{"type": "zIndex", "zIndex": 1}], "children": [
            {"type": "text", "content": "a"}, {"type": "spacer"}, {"type": "text", "content": "b"},
            {"type": "text", "content": "b"}, {"type": "emptyView"}]})");
        const AnyView& stack = view.as<ZIndex>()->content;
        const ViewList& children = type == "vstack"   ? stack.as<VStack>()->children
                                   : type == "hstack" ? stack.as<HStack>()->children
                                                      : stack.as<ZStack>()->children;
        ASSERT_EQ(children.size(), 5u);
        EXPECT_EQ(textOf(children[0]), "a");
        ASSERT_NE(children[1].as<Spacer>(), nullptr);
        EXPECT_EQ(children[1].as<Spacer>()->minLength, std::nullopt);
        EXPECT_EQ(textOf(children[2]), "b");
        EXPECT_EQ(textOf(children[3]), "b");
        EXPECT_NE(children[4].as<EmptyView>(), nullptr);
    }
}

TEST(Stacks, AnEmptyOneStillGetsItsModifiers) {
    const AnyView view = renderedNode(R"({"type": "hstack", "modifiers": [{"type": "offset", "x": 1, "y": 2}]})");
    ASSERT_NE(view.as<Offset>(), nullptr);
    EXPECT_TRUE(view.as<Offset>()->content.as<HStack>()->children.empty());
}

TEST(Stacks, TheFirstFailureEndsTheDrawing) {
    const char* const children =
        R"("children": [{"type": "spacer"}, {"type": "node", "name": "first"}, {"type": "node", "name": "second"}])";
    EXPECT_EQ(failureOf([&] { return renderedNode("{\"type\": \"vstack\", " + std::string(children) + "}"); }),
              "RefNode: node for name: first not found");
    EXPECT_EQ(failureOf([&] {
                  return renderedNode(
                      "{\"type\": \"vstack\", \"spacing\": \"{{initServerParam.x}}\", " + std::string(children) + "}",
                      "{}");
              }),
              "ResolveExpression: key path not found in model: [\"x\"]")
        << "the stack is bound before its children are drawn";
    EXPECT_EQ(failureOf([&] {
                  return renderedNode(
                      R"({"type": "zstack", "modifiers": [{"type": "zIndex", "zIndex": "{{initServerParam.m}}"}],
                                      "children": [{"type": "text", "content": "{{initServerParam.c}}"}]})",
                      "{}");
              }),
              "ResolveExpression: key path not found in model: [\"c\"]")
        << "children are drawn before modifiers are applied";
    EXPECT_EQ(failureOf([] {
                  return renderedNode(
                      R"({"type": "hstack", "spacing": "{{initServerParam.s}}", "alignment": "{{initServerParam.a}}"})",
                      "{}");
              }),
              "ResolveExpression: key path not found in model: [\"s\"]")
        << "spacing before alignment";
}

TEST(Placeholders, CarryModifiers) {
    EXPECT_NE(renderedNode(R"({"type": "spacer", "modifiers": [{"type": "zIndex", "zIndex": 1}]})").as<ZIndex>(),
              nullptr);
    const AnyView empty = renderedNode(R"({"type": "emptyView", "modifiers": [{"type": "zIndex", "zIndex": 1}]})");
    ASSERT_NE(empty.as<ZIndex>(), nullptr);
    EXPECT_NE(empty.as<ZIndex>()->content.as<EmptyView>(), nullptr);
}

TEST(RefNode, DrawsTheNamedNodeWithItsOwnModifiers) {
    const AnyView view = rendered(R"({"version": "1.0", "nodes": {
        "main": {"type": "node", "name": "my text", "modifiers": [{"type": "offset", "x": 1, "y": 1}]},
        "my text": {"type": "text", "content": "Hi", "modifiers": [{"type": "zIndex", "zIndex": 1}]}}})");
    ASSERT_NE(view.as<ZIndex>(), nullptr) << "the reference's own modifiers are not applied";
    EXPECT_EQ(textOf(view.as<ZIndex>()->content), "Hi");
}

TEST(RefNode, ItsModifiersAreDecodedAllTheSame) {
    EXPECT_EQ(failureOf([] { return nodeFrom(R"({"type": "node", "name": "a", "modifiers": [{"type": "offset"}]})"); }),
              "keyNotFound at modifiers[0]: the key \"x\" is missing");
    const AnyView view = rendered(R"({"version": "1.0", "nodes": {
        "main": {"type": "node", "name": "a", "modifiers": [{"type": "zIndex", "zIndex": "{{initServerParam.none}}"}]},
        "a": {"type": "spacer"}}})",
                                  "{}");
    EXPECT_NE(view.as<Spacer>(), nullptr) << "but never bound";
}

TEST(RefNode, EachUseIsDrawnAndBoundAnew) {
    const AnyView view = rendered(R"({"version": "1.0", "nodes": {
        "main": {"type": "vstack", "children": [{"type": "node", "name": "t"}, {"type": "node", "name": "t"}]},
        "t": {"type": "text", "content": "{{initServerParam.t}}"}}})",
                                  R"({"t": "bound"})");
    ASSERT_EQ(view.as<VStack>()->children.size(), 2u);
    EXPECT_EQ(textOf(view.as<VStack>()->children[0]), "bound");
    EXPECT_EQ(textOf(view.as<VStack>()->children[1]), "bound");
}

TEST(RefNode, Fails) {
    const struct {
        const char* why;
        const char* nodes;
        const char* failure;
    } rows[] = {
        {"no name", R"("main": {"type": "node"})", "keyNotFound at nodes.main: the key \"name\" is missing"},
        {"a name that is no string", R"("main": {"type": "node", "name": 5})",
         "typeMismatch at nodes.main.name: expected a string, found a number"},
        {"null as a name", R"("main": {"type": "node", "name": null})",
         "valueNotFound at nodes.main.name: expected a string, found null"},
        {"main", R"("main": {"type": "vstack", "children": [{"type": "node", "name": "main"}]})",
         "RefNode: Can not reference node called \"main\""},
        {"main from another node", R"("main": {"type": "node", "name": "a"}, "a": {"type": "node", "name": "main"})",
         "RefNode: Can not reference node called \"main\""},
        {"a missing name", R"("main": {"type": "node", "name": "Main "})", "RefNode: node for name: Main  not found"},
        {"the empty name", R"("main": {"type": "node", "name": ""})", "RefNode: node for name:  not found"},
        {"an expression is a name like any other", R"("main": {"type": "node", "name": "{{initServerParam.n}}"})",
         "RefNode: node for name: {{initServerParam.n}} not found"},
        {"itself", R"("main": {"type": "node", "name": "a"}, "a": {"type": "node", "name": "a"})",
         "RefNode: reference cycle: a -> a"},
        {"each other",
         R"("main": {"type": "node", "name": "a"}, "a": {"type": "node", "name": "b"}, "b": {"type": "node", "name": "a"})",
         "RefNode: reference cycle: a -> b -> a"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string document = R"({"version": "1.0", "nodes": {)" + std::string(row.nodes) + "}}";
        EXPECT_EQ(failureOf([&] { return rendered(document, R"({"n": "a"})"); }), row.failure);
    }
    EXPECT_EQ(failureOf([] {
                  return rendered(R"({"version": "1.0", "nodes": {"main": {"type": "node", "name": "x"},
            "x": {"type": "hstack", "children": [{"type": "spacer"}, {"type": "node", "name": "a"}]},
            "a": {"type": "node", "name": "b"}, "b": {"type": "vstack", "children": [{"type": "node", "name": "c"}]},
            "c": {"type": "node", "name": "a"}}})");
              }),
              "RefNode: reference cycle: a -> b -> c -> a")
        << "the way into the cycle is left out";
}

TEST(RefNode, TheSameNameTwiceSideBySideIsNoCycle) {
    EXPECT_EQ(failureOf([] {
                  return rendered(R"({"version": "1.0", "nodes": {
            "main": {"type": "vstack", "children": [{"type": "node", "name": "a"}, {"type": "node", "name": "b"}, {"type": "node", "name": "a"}]},
            "a": {"type": "node", "name": "b"}, "b": {"type": "spacer"}}})");
              }),
              "");
}

/// Entries that each draw the next one twice.
std::string doublings(int count) {
    std::string nodes = R"("main": {"type": "node", "name": "n0"})";
    for (int i = 0; i < count; ++i) {
        const std::string next = R"({"type": "node", "name": "n)" + std::to_string(i + 1) + "\"}";
        nodes += ", \"n" + std::to_string(i) + R"(": {"type": "zstack", "children": [)" + next + "," + next + "]}";
    }
    return R"({"version": "1.0", "nodes": {)" + nodes + ", \"n" + std::to_string(count) + R"(": {"type": "spacer"}}})";
}

TEST(Bounds, DoublingReferencesEndInAnError) {
    EXPECT_EQ(failureOf([] { return rendered(doublings(30)); }), "Engine: more than 1000000 nodes are drawn");
    EXPECT_EQ(failureOf([] { return rendered(doublings(10)); }), "");
}

TEST(Bounds, CountDrawnNodes) {
    Context context;
    context.maximumNodes = 4;
    const auto draw = [&](int children) {
        std::string list;
        for (int i = 0; i < children; ++i) list += (i > 0 ? "," : "") + std::string(R"({"type": "spacer"})");
        const std::string document = documentOf("{\"type\": \"vstack\", \"children\": [" + list + "]}");
        return failureOf([&] { return TavrinEngine().loadView(document, std::nullopt, context); });
    };
    EXPECT_EQ(draw(3), "");
    EXPECT_EQ(draw(4), "Engine: more than 4 nodes are drawn");
    EXPECT_EQ(draw(3), "") << "each call counts for itself";
    context.maximumNodes = 0;
    EXPECT_EQ(draw(0), "Engine: more than 0 nodes are drawn");
}

std::string nestedStacks(int depth) {
    std::string node = R"({"type": "spacer"})";
    for (int i = 1; i < depth; ++i) node = R"({"type": "vstack", "children": [)" + node + "]}";
    return documentOf(node);
}

TEST(Bounds, CountNestedNodes) {
    EXPECT_EQ(failureOf([] { return rendered(nestedStacks(512)); }), "");
    EXPECT_EQ(failureOf([] { return rendered(nestedStacks(513)); }), "Engine: nodes are nested deeper than 512");
    Context context;
    context.maximumNesting = 3;
    const auto draw = [&](const std::string& document) {
        return failureOf([&] { return TavrinEngine().loadView(document, std::nullopt, context); });
    };
    EXPECT_EQ(draw(nestedStacks(3)), "");
    EXPECT_EQ(draw(nestedStacks(4)), "Engine: nodes are nested deeper than 3");
    EXPECT_EQ(draw(nestedStacks(3)), "") << "a failed call leaves no depth behind";
    EXPECT_EQ(
        draw(R"({"version": "1.0", "nodes": {"main": {"type": "node", "name": "a"}, "a": {"type": "node", "name": "b"},
                       "b": {"type": "vstack", "children": [{"type": "spacer"}]}}})"),
        "Engine: nodes are nested deeper than 3")
        << "references count";
}

TEST(Bounds, ManyChildrenAreFine) {
    constexpr int count = 100'000;
    std::string list;
    for (int i = 0; i < count; ++i) list += (i > 0 ? "," : "") + std::string(R"({"type": "text", "content": "a"})");
    const AnyView view = renderedNode("{\"type\": \"vstack\", \"children\": [" + list + "]}");
    EXPECT_EQ(view.as<VStack>()->children.size(), std::size_t{count});
}

TEST(Bounds, ManyModifiersEndInAnError) {
    std::string list;
    for (int i = 0; i < 5'000; ++i) list += (i > 0 ? "," : "") + std::string(R"({"type": "zIndex", "zIndex": 1})");
    const std::string failure =
        failureOf([&] { return renderedNode("{\"type\": \"spacer\", \"modifiers\": [" + list + "]}"); });
    EXPECT_EQ(failure, "Engine: views are nested deeper than 4096");
}

}  // namespace
}  // namespace tavrin
