// SPDX-License-Identifier: MIT
#include <memory>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

/// A host's view that counts how often its body is asked for.
struct Counted {
    static constexpr std::string_view name = "Counted";
    std::shared_ptr<int> evaluations;
    AnyView content;

    [[nodiscard]] AnyView body(const EnvironmentValues&) const {
        ++*evaluations;
        return content;
    }
};

/// A view that shows what reaches it: as many boxes as lines are allowed, in the colour of texts.
struct Inheriting {
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const {
        return FilledShape{.shape = RoundedRectangle{.cornerRadius = double(environment.lineLimit.value_or(-1))},
                           .fill = environment.foregroundColor};
    }
};

/// A view without end.
struct Endless {
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return Padding{.length = 1, .content = Endless{}}; }
};

struct Itself {
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return Itself{}; }
};

TEST(Tree, ListsNodesInPreOrder) {
    const AnyView root = VStack{.children = {Overlay{.overlay = Circle{}, .content = Opacity{.content = Rectangle{}}},
                                             HStack{.children = {Capsule{}}}, EmptyView{}}};
    const LayoutTree tree = laidOut(root);
    std::vector<ViewKind> kinds;
    for (const LayoutNode& node : tree.nodes()) {
        kinds.push_back(node.kind);
        EXPECT_EQ(node.kind, node.view->kind());
    }
    EXPECT_THAT(kinds,
                testing::ElementsAre(ViewKind::vstack, ViewKind::overlay, ViewKind::circle, ViewKind::opacity,
                                     ViewKind::rectangle, ViewKind::hstack, ViewKind::capsule, ViewKind::emptyView));
    EXPECT_THAT(std::vector(tree.children(0).begin(), tree.children(0).end()), testing::ElementsAre(1, 5, 7));
    EXPECT_EQ(tree.secondary(1), 2U);
    EXPECT_EQ(tree.content(1), 3U);
    EXPECT_EQ(tree.content(3), 4U);
    EXPECT_TRUE(tree.children(7).empty());
    EXPECT_EQ(tree.widget(), mediumWidget);
}

TEST(Tree, KeepsItsViewsWhenMoved) {
    LayoutTree moved;
    {
        LayoutTree tree = laidOut(Opacity{.content = Counted{std::make_shared<int>(), Text{.content = "kept"}}});
        moved = std::move(tree);
    }
    ASSERT_EQ(moved.nodes().size(), 3U);
    EXPECT_EQ(std::get<SharedText>(moved.node(2).view->as<Text>()->content), "kept");
    EXPECT_EQ(moved.textBlock(2).lineCount(), 1U);
}

TEST(Tree, KnowsWhatIsNoView) {
    expectFrames({
        {"nothing", EmptyView{}, {none}},
        {"modified", Opacity{.content = Padding{.content = EmptyView{}}}, {none, none, none}},
        {"a stack of nothing is a view",
         Border{.content = HStack{.children = {EmptyView{}}}},
         {{169, 79, 0, 0}, {169, 79, 0, 0}, none}},
        {"a body that is nothing", Counted{std::make_shared<int>(), EmptyView{}}, {none, none}},
        {"whatever stands behind nothing",
         Background{.background = HStack{.children = {Circle{}}}, .content = framed(5, 5, EmptyView{})},
         {none, none, none, none, none}},
    });
}

TEST(Tree, UnfoldsBodiesOnce) {
    const auto evaluations = std::make_shared<int>();
    const AnyView counted = Counted{evaluations, Counted{evaluations, framed(50, 20)}};
    expectFrames(laidOut(HStack{.spacing = 0, .children = {Rectangle{}, counted, Rectangle{}}}), {{0, 0, 338, 158},
                                                                                                  {0, 0, 144, 158},
                                                                                                  {144, 69, 50, 20},
                                                                                                  {144, 69, 50, 20},
                                                                                                  {144, 69, 50, 20},
                                                                                                  {144, 69, 50, 20},
                                                                                                  {194, 0, 144, 158}});
    EXPECT_EQ(*evaluations, 2);
}

TEST(Tree, HandsDownWhatIsInherited) {
    const AnyView blue = ForegroundColor{.color = Color::blue, .content = Rectangle{}};
    const AnyView root = ForegroundColor{
        .color = Color::gray,
        .content = HStack{.children = {blue, Circle{}, LineLimit{.number = 3, .content = Inheriting{}}}}};
    const LayoutTree tree = laidOut(root);
    EXPECT_EQ(tree.inherited(0).foregroundColor, Color::primary);
    EXPECT_EQ(tree.inherited(3).foregroundColor, Color::blue) << "the innermost wins";
    EXPECT_EQ(tree.inherited(4).foregroundColor, Color::gray);
    EXPECT_EQ(tree.inherited(4).lineLimit, std::nullopt);
    const auto& body = *tree.node(7).view->as<FilledShape>();
    EXPECT_EQ(std::get<Color>(body.fill), Color::gray) << "bodies see it too";
    EXPECT_EQ(std::get<RoundedRectangle>(body.shape).cornerRadius, 3);
}

TEST(Tree, BoundsItsNesting) {
    for (const AnyView& endless : {AnyView(Endless{}), AnyView(Itself{})}) {
        try {
            laidOut(endless);
            ADD_FAILURE() << "no error";
        } catch (const TavrinError& error) {
            EXPECT_EQ(error, TavrinError("Engine", "views are nested deeper than 4096"));
        }
    }
}

TEST(Tree, BoundsItsNodes) {
    AnyView doubled = Rectangle{};
    for (int level = 0; level < 60; ++level) doubled = HStack{.children = {doubled, doubled}};
    try {
        laidOut(doubled);
        ADD_FAILURE() << "no error";
    } catch (const TavrinError& error) {
        EXPECT_EQ(error, TavrinError("Engine", "layout has more than 8000000 views"));
    }
}

}  // namespace
}  // namespace tavrin::layout
