// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

TEST(Stacks, ShareTheirRoom) {
    expectFrames({
        {"equally among equals",
         VStack{.spacing = 4, .children = {Rectangle{}, Rectangle{}, Rectangle{}}},
         {{0, 0, 338, 158}, {0, 0, 338, 50}, {0, 54, 338, 50}, {0, 108, 338, 50}}},
        {"what is fixed first, the rest to what is flexible",
         HStack{.spacing = 8, .children = {Rectangle{}, framed(60, 40)}},
         {{0, 0, 338, 158}, {0, 0, 270, 158}, {278, 59, 60, 40}, {278, 59, 60, 40}}},
        {"a maximum below its share leaves more to the others",
         HStack{.spacing = 0,
                .children = {Rectangle{}, FlexibleFrame{.maxWidth = 38, .content = Rectangle{}}, Rectangle{}}},
         {{0, 0, 338, 158}, {0, 0, 150, 158}, {150, 0, 38, 158}, {150, 0, 38, 158}, {188, 0, 150, 158}}},
        {"two spacers share what is left",
         HStack{.children = {Spacer{}, framed(30, std::nullopt), Spacer{}}},
         {{0, 0, 338, 158}, {0, 79, 154, 0}, {154, 0, 30, 158}, {154, 0, 30, 158}, {184, 79, 154, 0}}},
        {"nothing is left for what comes last",
         HStack{.spacing = 0, .children = {Rectangle{}, framed(400, 10)}},
         {{-31, 0, 400, 158}, {-31, 0, 0, 158}, {-31, 74, 400, 10}, {-31, 74, 400, 10}}},
        {"an over-full stack is larger than its room and is centred",
         HStack{.alignment = VerticalAlignment::bottom, .spacing = 10, .children = {framed(200, 20), framed(200, 40)}},
         {{-36, 59, 410, 40}, {-36, 79, 200, 20}, {-36, 79, 200, 20}, {174, 59, 200, 40}, {174, 59, 200, 40}}},
        {"an empty stack takes no room", VStack{}, {{169, 79, 0, 0}}},
    });
}

TEST(Stacks, OfferEachKindOfRoom) {
    const AnyView row = HStack{.children = {Rectangle{}, framed(30, 20)}};
    expectFrames({
        {"no proposal is passed on as none: ideal sizes",
         AspectRatio{.content = row},
         // 10 + 8 + 30 by 20: the ratio of the ideal size is 2.4
         {{0, 158 / 2.0 - 338 / 4.8, 338, 338 / 2.4},
          {0, 158 / 2.0 - 338 / 4.8, 338, 338 / 2.4},
          {0, 158 / 2.0 - 338 / 4.8, 300, 338 / 2.4},
          {308, 69, 30, 20},
          {308, 69, 30, 20}}},
        {"an infinite one as infinite: greatest sizes",
         FlexibleFrame{.minWidth = infinity, .alignment = Alignment::topLeading, .content = row},
         {{0, 0, infinity, 158},
          {0, 0, infinity, 158},
          {0, 0, infinity, 158},
          {infinity, 69, 30, 20},
          {infinity, 69, 30, 20}}},
    });
}

TEST(Stacks, SpaceTheirChildren) {
    const AnyView box = framed(10, std::nullopt);
    const struct {
        const char* why;
        std::optional<double> spacing;
        ViewList children;
        double width;
    } rows[] = {
        {"8 by default", std::nullopt, {box, box}, 28},
        {"as given", 3, {box, box}, 23},
        {"a negative one overlaps", -4, {box, box}, 16},
        {"but leaves no negative size", -40, {box, box}, 0},
        {"none beside a spacer", std::nullopt, {box, framed(5, 5, Spacer{}), box}, 25},
        {"nor beside a spacer in modifiers",
         std::nullopt,
         {box, Opacity{.content = Offset{.x = 1, .content = framed(5, 5, Spacer{})}}, box},
         25},
        {"what is padded has spacing",
         std::nullopt,
         {box, Opacity{.content = Padding{.length = 1, .content = framed(5, 5, Spacer{})}}, box},
         43},
        {"a stack around a spacer is no spacer",
         std::nullopt,
         {box, framed(5, 5, HStack{.children = {Spacer{}}}), box},
         41},
        {"a given one holds beside a spacer too", 2, {box, framed(5, 5, Spacer{}), box}, 29},
        {"nothing takes no spacing", std::nullopt, {EmptyView{}, box, EmptyView{}, box, EmptyView{}}, 28},
        {"nor does a modified nothing",
         std::nullopt,
         {box, Padding{.length = 20, .content = EmptyView{}}, box, framed(50, 50, EmptyView{})},
         28},
        {"an infinite one counts as none given", infinity, {box, box}, 28},
        {"as does one that is not a number", nan, {box, box}, 28},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const LayoutTree tree = laidOut(HStack{.spacing = row.spacing, .children = row.children});
        EXPECT_DOUBLE_EQ(tree.node(0).frame.size.width, row.width);
    }
}

TEST(Stacks, AlignTheirChildren) {
    const ViewList boxes{framed(50, 10), framed(90, 30)};
    expectFrames({
        {"trailing in a column",
         VStack{.alignment = HorizontalAlignment::trailing, .children = boxes},
         {{124, 55, 90, 48}, {164, 55, 50, 10}, {164, 55, 50, 10}, {124, 73, 90, 30}, {124, 73, 90, 30}}},
        {"centred in a row",
         HStack{.children = boxes},
         {{95, 64, 148, 30}, {95, 74, 50, 10}, {95, 74, 50, 10}, {153, 64, 90, 30}, {153, 64, 90, 30}}},
        {"top in a row",
         HStack{.alignment = VerticalAlignment::top, .children = boxes},
         {{95, 64, 148, 30}, {95, 64, 50, 10}, {95, 64, 50, 10}, {153, 64, 90, 30}, {153, 64, 90, 30}}},
        {"at a corner of layers, which are as large as all of them",
         ZStack{.alignment = Alignment::topTrailing, .children = {framed(50, 80), framed(90, 20)}},
         {{124, 39, 90, 80}, {164, 39, 50, 80}, {164, 39, 50, 80}, {124, 39, 90, 20}, {124, 39, 90, 20}}},
    });
}

TEST(Stacks, GiveSpacersAnAxis) {
    const AnyView spacer = Spacer{};
    expectFrames({
        {"a row's, at its default least of 8",
         HStack{.children = {framed(30, 20), framed(std::nullopt, 5, spacer), framed(400, 5)}},
         {{-50, 69, 438, 20},
          {-50, 69, 30, 20},
          {-50, 69, 30, 20},
          {-20, 76.5, 8, 5},
          {-20, 79, 8, 0},
          {-12, 76.5, 400, 5},
          {-12, 76.5, 400, 5}}},
        {"a column's", VStack{.children = {spacer}}, {{169, 0, 0, 158}, {169, 0, 0, 158}}},
        {"through modifiers",
         VStack{.children = {Opacity{.content = spacer}}},
         {{169, 0, 0, 158}, {169, 0, 0, 158}, {169, 0, 0, 158}}},
        {"both without a stack", spacer, {{0, 0, 338, 158}}},
        {"both in layers",
         VStack{.children = {ZStack{.children = {spacer}}}},
         {{0, 0, 338, 158}, {0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"both behind a view",
         HStack{.children = {Background{.background = spacer, .content = framed(60, 40)}, Rectangle{}}},
         {{0, 0, 338, 158}, {0, 59, 60, 40}, {0, 59, 60, 40}, {0, 59, 60, 40}, {0, 59, 60, 40}, {68, 0, 270, 158}}},
        {"the stack's again in what has a background",
         HStack{.children = {Background{.background = Rectangle{}, .content = spacer}}},
         {{0, 79, 338, 0}, {0, 79, 338, 0}, {0, 79, 338, 0}, {0, 79, 338, 0}}},
    });
}

TEST(Stacks, NestFlexibly) {
    const AnyView left = VStack{.children = {Rectangle{}, framed(std::nullopt, 20)}};
    const AnyView right =
        VStack{.alignment = HorizontalAlignment::leading,
               .children = {framed(70, std::nullopt), Spacer{},
                            Padding{.edges = {.top = true}, .length = 5, .content = framed(30, std::nullopt)}}};
    // The right column offers all but the spacer's 8 to its two boxes.
    expectFrames(laidOut(HStack{.spacing = 12, .children = {left, right}}, {338, 354}), {{0, 0, 338, 354},
                                                                                         {0, 0, 256, 354},
                                                                                         {0, 0, 256, 326},
                                                                                         {0, 334, 256, 20},
                                                                                         {0, 334, 256, 20},
                                                                                         {268, 0, 70, 354},
                                                                                         {268, 0, 70, 173},
                                                                                         {268, 0, 70, 173},
                                                                                         {268, 173, 0, 8},
                                                                                         {268, 181, 30, 173},
                                                                                         {268, 186, 30, 168},
                                                                                         {268, 186, 30, 168}});
}

TEST(Stacks, DrawInOrderOfDepth) {
    const auto depth = [](double value, AnyView content = Rectangle{}) {
        return AnyView(ZIndex{.value = value, .content = std::move(content)});
    };
    const struct {
        const char* why;
        ViewList children;
        std::vector<int> order;  // positions among the children that are views
    } rows[] = {
        {"document order", {Rectangle{}, Circle{}, Rectangle{}}, {0, 1, 2}},
        {"deep ones last", {depth(2), Circle{}, depth(1)}, {1, 2, 0}},
        {"negative ones first", {Rectangle{}, depth(-1)}, {1, 0}},
        {"document order among equals", {depth(1), depth(1), Circle{}, depth(0)}, {2, 3, 0, 1}},
        {"through modifiers", {Opacity{.content = depth(5)}, Circle{}}, {1, 0}},
        {"the innermost of several", {depth(9, depth(-9)), Circle{}}, {0, 1}},
        {"not of what a nested stack holds", {HStack{.children = {depth(7)}}, Circle{}}, {0, 1}},
        {"nor of a background", {Background{.background = depth(7), .content = Rectangle{}}, Circle{}}, {0, 1}},
        {"not a number counts as 0", {depth(1), depth(nan), depth(-1)}, {2, 1, 0}},
        {"infinite ones too", {depth(infinity), depth(-infinity), Circle{}}, {1, 2, 0}},
        {"no view is not drawn", {depth(3), EmptyView{}, Circle{}}, {1, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        for (const AnyView& stack :
             {AnyView(ZStack{.children = row.children}), AnyView(VStack{.children = row.children}),
              AnyView(HStack{.children = row.children})}) {
            const LayoutTree tree = laidOut(stack);
            std::vector<LayoutTree::Index> present;
            for (const auto child : tree.children(0))
                if (!tree.node(child).absent) present.push_back(child);
            std::vector<LayoutTree::Index> expected;
            for (const int at : row.order) expected.push_back(present[static_cast<std::size_t>(at)]);
            EXPECT_THAT(tree.drawingOrder(0), testing::ElementsAreArray(expected));
        }
    }
}

}  // namespace
}  // namespace tavrin::layout
