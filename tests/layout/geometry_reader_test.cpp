// SPDX-License-Identifier: MIT
#include <limits>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

GeometryReader reader(const AnyView& content) {
    return {[content](const GeometryProxy&) { return content; }};
}

/// A reader whose content is half as large as itself.
const GeometryReader halving{
    [](const GeometryProxy& geometry) { return framed(geometry.size.width / 2, geometry.size.height / 2); }};

TEST(GeometryReader, TakesWhatItIsOfferedAndPlacesItsContentAtTheTopLeadingCorner) {
    expectFrames({
        {"all of the widget", halving, {{0, 0, 338, 158}, {0, 0, 169, 79}, {0, 0, 169, 79}}},
        {"a frame's room",
         framed(40, 30, halving),
         {{149, 64, 40, 30}, {149, 64, 40, 30}, {149, 64, 20, 15}, {149, 64, 20, 15}}},
        {"10 where nothing is offered",
         AspectRatio{.ratio = 1, .content = FixedFrame{.content = halving}},
         {{90, 0, 158, 158}, {90, 0, 158, 158}, {90, 0, 158, 158}, {90, 0, 79, 79}, {90, 0, 79, 79}}},
        {"its content may stick out",
         framed(10, 10, reader(framed(30, 20))),
         {{164, 74, 10, 10}, {164, 74, 10, 10}, {164, 74, 30, 20}, {164, 74, 30, 20}}},
        {"a content that is no view leaves the reader one",
         HStack{.spacing = 0, .children = {reader(EmptyView{}), framed(38, 10)}},
         {{0, 0, 338, 158}, {0, 0, 300, 158}, {300, 74, 38, 10}, {300, 74, 38, 10}, none}},
        {"without a content it is empty", GeometryReader{}, {{0, 0, 338, 158}, none}},
        {"a spacer inside is in no stack of the outside",
         VStack{.children = {reader(Spacer{})}},
         {{0, 0, 338, 158}, {0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"a stack shares its room with it",
         HStack{.spacing = 0, .children = {halving, Rectangle{}}},
         {{0, 0, 338, 158}, {0, 0, 169, 158}, {169, 0, 169, 158}, {0, 0, 84.5, 79}, {0, 0, 84.5, 79}}},
        {"readers in readers",
         reader(Padding{.length = 9, .content = halving}),
         {{0, 0, 338, 158}, {0, 0, 338, 158}, {9, 9, 320, 140}, {9, 9, 160, 70}, {9, 9, 160, 70}}},
    });
}

TEST(GeometryReader, MakesItsContentOnce) {
    int calls = 0;
    const GeometryReader counting{[&calls](const GeometryProxy&) {
        ++calls;
        return AnyView(Rectangle{});
    }};
    AnyView view = counting;
    for (int level = 0; level < 20; ++level)
        view = HStack{.children = {framed(1, 1), VStack{.children = {view, Rectangle{}}}}};
    const LayoutTree tree = laidOut(view);
    EXPECT_EQ(calls, 1) << "however often the stacks around it ask for sizes";
    EXPECT_LT(tree.answerCount(), 25 * tree.nodes().size());
}

TEST(GeometryReader, IsNotAskedForContentWhereItIsNoView) {
    bool called = false;
    const GeometryReader noticing{[&called](const GeometryProxy&) {
        called = true;
        return AnyView();
    }};
    const LayoutTree tree = laidOut(Background{.background = noticing, .content = EmptyView{}});
    EXPECT_FALSE(called);
    EXPECT_EQ(tree.nodes().size(), 3U);
}

TEST(GeometryReader, HandsOnWhatItInherits) {
    const AnyView view = ForegroundColor{
        .color = Color::blue, .content = LineLimit{.number = 2, .content = reader(Text{.content = "a\nb\nc"})}};
    const LayoutTree tree = laidOut(view);
    const auto last = static_cast<LayoutTree::Index>(tree.nodes().size() - 1);
    EXPECT_EQ(tree.inherited(last).foregroundColor, Color::blue);
    EXPECT_EQ(tree.inherited(last).lineLimit, 2);
    EXPECT_NEAR(tree.textBlock(last).size().height, 2 * 17 * 1.193359 + 1.712891, 1.0 / 3)
        << "two lines and their leading, on whole pixels";
}

TEST(GeometryReader, KnowsInfiniteRoom) {
    Size seen;
    const GeometryReader noticing{[&seen](const GeometryProxy& geometry) {
        seen = geometry.size;
        return framed(geometry.size.width, 5);
    }};
    const LayoutTree tree = laidOut(FlexibleFrame{.minWidth = infinity, .content = noticing});
    EXPECT_EQ(seen, (Size{infinity, 158}));
    EXPECT_EQ(tree.nodes().back().frame.size, (Size{infinity, 5}));
}

/// Unfolds without end.
struct Endless {
    static AnyView content(const GeometryProxy&) { return Padding{.length = 1, .content = GeometryReader{&content}}; }
};

TEST(GeometryReader, IsBounded) {
    try {
        static_cast<void>(laidOut(GeometryReader{&Endless::content}));
        FAIL();
    } catch (const TavrinError& error) {
        EXPECT_EQ(error.message, "views are nested deeper than 4096");
    }
    // Many beside each other cost what they are.
    const LayoutTree tree = laidOut(ZStack{.children = ViewList(50'000, halving)});
    EXPECT_EQ(tree.nodes().size(), 150'001U);
    EXPECT_LT(tree.answerCount(), 8 * tree.nodes().size());
}

}  // namespace
}  // namespace tavrin::layout
