// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/edge_distances.h"

#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

AnyView textOf(double size) { return Text{.content = SharedText("Ag"), .font = Font::system(size)}; }
const AnyView body = Text{.content = SharedText("Ag")};
const AnyView box = Rectangle{};

double distance(const AnyView& stack, LayoutTree::Index before, LayoutTree::Index after, double scale = 3) {
    EnvironmentValues environment;
    environment.displayScale = scale;
    const LayoutTree tree = laidOut(stack, {900, 900}, environment);
    const bool isColumn = stack.as<VStack>() != nullptr;
    const Rect& first = tree.node(before).frame;
    const Rect& second = tree.node(after).frame;
    return isColumn ? second.origin.y - first.origin.y - first.size.height
                    : second.origin.x - first.origin.x - first.size.width;
}

TEST(EdgeDistances, OfTwoViewsInAColumn) {
    const struct {
        const char* why;
        AnyView above, below;
        double distance;
        double scale = 3;
    } rows[] = {
        {"plain views", box, Circle{}, 8},
        {"a text under a shape: descent 4.1006, clearance 2.0287 up to 7 pixels", box, textOf(17), 4.100587 + 7.0 / 3},
        {"a text over a shape: 4.2085 over its capitals besides", textOf(17), box, 4.100587 + 7.0 / 3 + 4.208486},
        {"the clearance in halves of points", box, textOf(17), 4.100587 + 2.5, 2},
        {"in points", box, textOf(17), 4.100587 + 3, 1},
        {"it grows with the text", box, textOf(34), 8.201174 + 13.0 / 3},
        {"a picture that is missing is plain", Image{}, box, 8},
        {"texts with sizes touch", textOf(17), textOf(30), 0},
        {"body texts stand their leading apart: 1.7129 up to 6 pixels", body, body, 2},
        {"the lower one's", body, textOf(17), 0},
        {"the lower one's", textOf(17), body, 2},
        {"a text that draws nothing", box, textOf(0), 0},
        {"nothing beside a spacer", box, Spacer{}, 0},
        {"nor beside an empty stack", box, HStack{}, 0},
        {"nor beside layers of nothing", ZStack{.children = {EmptyView{}}}, textOf(17), 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ViewList children{row.above, row.below};
        const LayoutTree tree = laidOut(VStack{.children = children});
        EXPECT_NEAR(distance(VStack{.children = children}, 1, tree.node(1).end, row.scale), row.distance, 1e-6);
    }
}

TEST(EdgeDistances, OfTwoViewsInARow) {
    for (const auto& [before, after, expected] :
         {std::tuple{box, textOf(17), 8.0}, std::tuple{textOf(17), textOf(40), 8.0}, std::tuple{body, box, 8.0},
          std::tuple{body, AnyView(Spacer{}), 0.0}})
        EXPECT_NEAR(distance(HStack{.children = {before, after}}, 1, 2), expected, 1e-9);
}

TEST(EdgeDistances, PassThroughModifiersAndStacks) {
    const double above = 4.100587 + 7.0 / 3;
    const double below = above + 4.208486;
    const AnyView text = textOf(17);
    const AnyView spacer = Spacer{};
    const struct {
        const char* why;
        AnyView above, below;
        double distance;
    } rows[] = {
        {"through what only draws", box, Opacity{.content = Offset{.y = 5, .content = text}}, above},
        {"through a link and a ratio", box,
         Link{.destination = *URL::parse("a:b"), .label = AspectRatio{.content = text}}, above},
        {"padding makes the edge plain on which it lies", box,
         Padding{.edges = {.top = true}, .length = 3, .content = text}, 8},
        {"but not another", box, Padding{.edges = {.leading = true, .bottom = true}, .length = 3, .content = text},
         above},
        {"nor one that it does not move", box, Padding{.length = 0, .content = text}, above},
        {"negative padding moves it", Padding{.edges = {.bottom = true}, .length = -3, .content = text}, box, 8},
        {"a frame's height makes top and bottom plain", box, framed(std::nullopt, 30, text), 8},
        {"a width does not", box, framed(40, std::nullopt, text), above},
        {"a length that does not hold is none", box, framed(std::nullopt, -30, text), above},
        {"a bound does", text, FlexibleFrame{.minHeight = 5, .content = text}, 8 > below ? 8 : below},
        {"a frame directly around a spacer adds nothing", box, framed(5, 5, spacer), 0},
        {"nor a bound there", box, FlexibleFrame{.maxHeight = 5, .content = spacer}, 0},
        {"a frame around such a frame does", box, FlexibleFrame{.maxHeight = 5, .content = framed(5, 5, spacer)}, 8},
        {"padding around a spacer does", box, Padding{.length = 1, .content = spacer}, 8},
        {"a row: the largest of all", box, HStack{.children = {textOf(10), textOf(17)}}, above},
        {"a row with a plain view too", box, HStack{.children = {text, box}}, 8},
        {"a column: the first", box, VStack{.children = {text, box}}, above},
        {"a column: the last", VStack{.children = {text, box}}, text, above},
        {"a column that begins with a spacer", box, VStack{.children = {spacer, box}}, 0},
        {"layers: the largest of all", ZStack{.children = {textOf(10), text}}, box, below},
        {"views that are none do not count", box, VStack{.children = {EmptyView{}, text}}, above},
        {"a background does not count", box, Background{.background = box, .content = text}, above},
        {"an empty stack in a stack has no edges", box, VStack{.children = {HStack{}}}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const AnyView stack = VStack{.children = {row.above, row.below}};
        EXPECT_NEAR(distance(stack, 1, laidOut(stack).node(1).end), row.distance, 1e-6);
    }
}

TEST(EdgeDistances, AreKeptOnceForEqualEdges) {
    EdgeTable table;
    const ViewEdges text = edgesOf(textDistances(Font::system(17), 3));
    EXPECT_EQ(table.idOf({}), EdgeTable::none);
    EXPECT_EQ(table.idOf(plainEdges()), EdgeTable::plain);
    const EdgeTable::Id id = table.idOf(text);
    EXPECT_GT(id, EdgeTable::plain);
    EXPECT_EQ(table.idOf(edgesOf(textDistances(Font::system(17), 3))), id);
    EXPECT_EQ(table[id], text);
    EXPECT_NE(table.idOf(edgesOf(textDistances(Font::system(17), 2))), id);
}

}  // namespace
}  // namespace tavrin::layout
