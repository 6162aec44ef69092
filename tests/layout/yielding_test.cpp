// SPDX-License-Identifier: MIT
#include <limits>

#include "tests/layout/laid_out.h"

// Spacers and empty stacks take what others leave.

namespace tavrin::layout {
namespace {

const AnyView spacer = Spacer{};
const AnyView box = Rectangle{};

AnyView least(double length) { return Spacer{.minLength = length}; }

/// The lengths of a row's children, in document order.
std::vector<double> lengthsOf(const ViewList& children, double room = 338, std::optional<double> spacing = 0) {
    const LayoutTree tree = laidOut(HStack{.spacing = spacing, .children = children}, {room, 158});
    std::vector<double> lengths;
    for (const auto child : tree.children(0)) lengths.push_back(tree.node(child).frame.size.width);
    return lengths;
}

TEST(Yielding, SpacersTakeWhatOthersLeave) {
    const struct {
        const char* why;
        ViewList children;
        double room;
        std::vector<double> lengths;
    } rows[] = {
        {"a shape gets all but the spacer's 8", {box, spacer}, 100, {92, 8}},
        {"or its given minimum", {box, least(30), box}, 100, {35, 30, 35}},
        {"all minima are set aside", {spacer, box, least(20)}, 100, {8, 72, 20}},
        {"what is fixed leaves more to spacers", {framed(30, 5), spacer, spacer}, 100, {30, 35, 35}},
        {"of spacers the larger minimum is served first", {least(0), least(80)}, 100, {20, 80}},
        {"equal ones share", {spacer, least(8), spacer}, 99, {33, 33, 33}},
        {"others come first also where they stand last", {spacer, spacer, box}, 100, {8, 8, 84}},
        {"a flexible view is offered all the room",
         {FlexibleFrame{.maxWidth = 60, .content = box}, spacer},
         100,
         {60, 40}},
        {"in too little room spacers keep their minimum", {framed(90, 5), spacer, least(20)}, 100, {90, 8, 20}},
        {"and others get none", {box, least(60), least(60)}, 100, {0, 60, 60}},
        {"through what only draws", {box, Opacity{.content = Border{.content = spacer}}}, 100, {92, 8}},
        {"in a frame it is a view like others", {box, FlexibleFrame{.minHeight = 5, .content = spacer}}, 100, {50, 50}},
        {"in padding too", {box, Padding{.length = 0, .content = spacer}}, 100, {50, 50}},
        {"and in a ratio", {box, AspectRatio{.ratio = -1, .content = spacer}}, 100, {50, 50}},
        {"an empty stack yields and takes nothing", {box, VStack{}, spacer}, 100, {92, 0, 8}},
        {"a stack of spacers does not yield", {box, HStack{.children = {spacer}}}, 100, {50, 50}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_THAT(lengthsOf(row.children, row.room), testing::Pointwise(testing::DoubleNear(1e-9), row.lengths));
    }
}

TEST(Yielding, TiesAmongTheEndlesslyFlexible) {
    const auto atLeast = [](double length) {
        return AnyView(FlexibleFrame{.minWidth = length, .maxWidth = infinity, .content = box});
    };
    EXPECT_THAT(lengthsOf({atLeast(0), atLeast(80), box}, 100), testing::ElementsAre(10, 80, 10))
        << "the larger minimum is served first";
    EXPECT_THAT(lengthsOf({atLeast(0), atLeast(60), atLeast(30)}, 100), testing::ElementsAre(10, 60, 30));
    EXPECT_THAT(lengthsOf({atLeast(0), atLeast(80), atLeast(60)}, 100), testing::ElementsAre(0, 80, 60))
        << "the remainder falls below 0";
    EXPECT_THAT(lengthsOf({atLeast(0), atLeast(80), atLeast(60), spacer}, 100), testing::ElementsAre(0, 80, 60, 8));
}

TEST(Yielding, EqualFlexibilitiesKeepTheirOrder) {
    // Both circles can be as long as the row is high, but 20 / 3 + 32 - 32 is not 20 / 3.
    const AnyView padded = Padding{.edges = {.leading = true, .trailing = true}, .length = 16, .content = Circle{}};
    const LayoutTree tree = laidOut(HStack{.spacing = 0, .children = {Circle{}, padded}}, {20, 20.0 / 3});
    EXPECT_NEAR(tree.node(1).frame.size.width, 20.0 / 3, 1e-9) << "the first one is offered its half first";
    EXPECT_NEAR(tree.node(0).frame.size.width, 20.0 / 3 + 32, 1e-9);
}

TEST(Yielding, LayersAreAsLargeAsWhatDoesNotYield) {
    expectFrames({
        {"a spacer does not make them larger",
         ZStack{.children = {spacer, framed(60, 40)}},
         {{139, 59, 60, 40}, {139, 59, 60, 40}, {139, 59, 60, 40}, {139, 59, 60, 40}}},
        {"where there is nothing else it does",
         ZStack{.children = {spacer, HStack{}}},
         {{0, 0, 338, 158}, {0, 0, 338, 158}, {169, 79, 0, 0}}},
        {"each child is placed in their own size",
         ZStack{.children = {framed(60, 40), Background{.background = EmptyView{},
                                                        .content = FlexibleFrame{.maxHeight = 10, .content = box}}}},
         {{0, 59, 338, 40},
          {139, 59, 60, 40},
          {139, 59, 60, 40},
          {0, 74, 338, 10},
          none,
          {0, 74, 338, 10},
          {0, 74, 338, 10}}},
    });
}

TEST(Yielding, HostileRoomsNeitherLoopNorBreak) {
    const ViewList many(100'000, spacer);
    const LayoutTree crowded = laidOut(HStack{.children = many});
    EXPECT_EQ(crowded.node(0).frame.size.width, 800'000);
    AnyView empty = VStack{};
    for (int level = 0; level < 1'000; ++level) empty = HStack{.children = {empty, VStack{}}};
    EXPECT_EQ(laidOut(empty).node(0).frame.size, (Size{0, 0}));
    const AnyView endless = FlexibleFrame{.minWidth = infinity, .content = box};
    for (const ViewList& children : {ViewList{endless, spacer, box}, ViewList{endless, endless, least(infinity)},
                                     ViewList{least(1e308), least(1e308), least(1e308), endless}})
        for (const LayoutTree tree = laidOut(HStack{.children = children}); const LayoutNode& node : tree.nodes()) {
            EXPECT_FALSE(std::isnan(node.frame.origin.x) || std::isnan(node.frame.size.width));
            EXPECT_GE(node.frame.size.width, 0);
        }
}

}  // namespace
}  // namespace tavrin::layout
