// SPDX-License-Identifier: MIT
#include <limits>

#include "tavrin/platform/layout/leaf_rules.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

TEST(Leaves, ShapesAnswer) {
    const struct {
        const char* why;
        Proposal proposal;
        Size filling, square;
    } rows[] = {
        {"what is proposed, the shorter side", {40, 30}, {40, 30}, {30, 30}},
        {"10 where nothing is", {absent, 30}, {10, 30}, {10, 10}},
        {"10 where nothing is", {5, absent}, {5, 10}, {5, 5}},
        {"10 x 10 without a proposal", {}, {10, 10}, {10, 10}},
        {"infinite room", {infinity, 30}, {infinity, 30}, {30, 30}},
        {"no room", {0, 30}, {0, 30}, {0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(fillingAnswer(row.proposal), row.filling);
        EXPECT_EQ(squareAnswer(row.proposal), row.square);
        EXPECT_EQ(shapeAnswer(Capsule{}, row.proposal), row.filling);
        EXPECT_EQ(shapeAnswer(Circle{}, row.proposal), row.square);
    }
}

TEST(Leaves, FillOrStandAsSquares) {
    const std::vector<Frame> filling{{0, 0, 338, 158}};
    const std::vector<Frame> square{{90, 0, 158, 158}};
    expectFrames({
        {"a rectangle", Rectangle{}, filling},
        {"a rounded rectangle", RoundedRectangle{.cornerRadius = 5}, filling},
        {"a capsule", Capsule{}, filling},
        {"a colour", Color::blue, filling},
        {"a gradient", LinearGradient{}, filling},
        {"a filled rectangle", FilledShape{.shape = Rectangle{}}, filling},
        {"a stroked capsule", StrokedShape{.shape = Capsule{}}, filling},
        {"a circle", Circle{}, square},
        {"a filled circle", FilledShape{.shape = Circle{}}, square},
        {"a stroked circle", StrokedShape{.shape = Circle{}}, square},
    });
}

TEST(Leaves, ImagesAnswer) {
    const Image image{std::make_shared<const Bitmap>(6, 4, std::vector<std::uint32_t>(24))};
    const struct {
        const char* why;
        Proposal proposal;
        Size size, missing;
    } rows[] = {
        {"what is proposed", {40, 30}, {40, 30}, {40, 30}},
        {"its own height", {40, absent}, {40, 4}, {40, 0}},
        {"its own width", {absent, 30}, {6, 30}, {0, 30}},
        {"a point for each pixel", {}, {6, 4}, {0, 0}},
        {"infinite room", {infinity, absent}, {infinity, 4}, {infinity, 0}},
        {"no room", {0, 0}, {0, 0}, {0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(imageAnswer(image, row.proposal), row.size);
        EXPECT_EQ(imageAnswer(Image{}, row.proposal), row.missing);
    }
    expectFrames({
        {"an image takes all room", image, {{0, 0, 338, 158}}},
        {"a missing one too", Image{}, {{0, 0, 338, 158}}},
        {"the ratio of its pixels",
         AspectRatio{.contentMode = ContentMode::fit, .content = image},
         {{50.5, 0, 237, 158}, {50.5, 0, 237, 158}}},
    });
}

TEST(Leaves, SpacersAnswer) {
    using enum SpacerAxes;
    const struct {
        const char* why;
        std::optional<double> least;
        SpacerAxes axes;
        Proposal proposal;
        Size size;
    } rows[] = {
        {"everything along, nothing across", absent, horizontal, {100, 50}, {100, 0}},
        {"everything along, nothing across", absent, vertical, {100, 50}, {0, 50}},
        {"everything in both", absent, both, {100, 50}, {100, 50}},
        {"at least 8", absent, horizontal, {3, 50}, {8, 0}},
        {"at least what is given", 20, vertical, {3, 10}, {0, 20}},
        {"0 is given", 0, vertical, {3, 0}, {0, 0}},
        {"its least without a proposal", 20, both, {absent, absent}, {20, 20}},
        {"its greatest is infinite", absent, horizontal, {infinity, 1}, {infinity, 0}},
        {"a negative least is none", -20, horizontal, {absent, 1}, {0, 0}},
        {"one that is not finite counts as absent", infinity, horizontal, {absent, 1}, {8, 0}},
        {"one that is no number counts as absent", nan, horizontal, {absent, 1}, {8, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(spacerAnswer(Spacer{.minLength = row.least}, row.axes, row.proposal), row.size);
    }
}

Size sizeOf(const AnyView& view, Size widget, const EnvironmentValues& environment = {}) {
    return laidOut(view, widget, environment).node(0).frame.size;
}

TEST(Leaves, TextsBreakWithinTheirRoom) {
    const AnyView words = Text{.content = "one two three four five six seven eight"};
    const Size line = sizeOf(words, {10'000, 10'000});
    EXPECT_GT(line.width, 100);
    EXPECT_LT(line.height, 24);

    const LayoutTree broken = laidOut(words, {line.width / 2, 10'000});
    EXPECT_LE(broken.node(0).frame.size.width, line.width / 2);
    EXPECT_GE(broken.textBlock(0).lineCount(), 2U);
    EXPECT_FALSE(broken.textBlock(0).truncated());

    const LayoutTree cut = laidOut(words, {line.width / 2, line.height});
    EXPECT_EQ(cut.node(0).frame.size.height, line.height);
    EXPECT_EQ(cut.textBlock(0).lineCount(), 1U);
    EXPECT_TRUE(cut.textBlock(0).truncated());

    const Size unbroken = sizeOf(FlexibleFrame{.minWidth = infinity, .content = words}, {10, 1'000});
    EXPECT_EQ(unbroken.height, line.height) << "an infinite width breaks nothing";
    EXPECT_EQ(sizeOf(words, {0, 0}).width, 0) << "never wider than proposed";
}

TEST(Leaves, TextsKeepTheNearestLineLimit) {
    const AnyView text = Text{.content = "a\nb\nc\nd"};
    const auto limited = [](std::optional<std::int64_t> lines, AnyView content) {
        return AnyView(LineLimit{.number = lines, .content = std::move(content)});
    };
    const struct {
        const char* why;
        AnyView view;
        std::size_t lines;
    } rows[] = {
        {"no limit", text, 4},
        {"a limit", limited(3, text), 3},
        {"the innermost of several", limited(1, limited(2, text)), 2},
        {"through modifiers and stacks", limited(2, VStack{.children = {Padding{.content = text}}}), 2},
        {"an absent one removes it", limited(1, limited(absent, text)), 4},
        {"below 1 counts as 1", limited(0, text), 1},
        {"below 1 counts as 1", limited(std::numeric_limits<std::int64_t>::min(), text), 1},
        {"a large one", limited(std::numeric_limits<std::int64_t>::max(), text), 4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const LayoutTree tree = laidOut(row.view, {338, 1'000});
        const auto last = static_cast<LayoutTree::Index>(tree.nodes().size() - 1);
        EXPECT_EQ(tree.textBlock(last).lineCount(), row.lines);
    }
    EnvironmentValues environment;
    environment.lineLimit = -1;
    EXPECT_EQ(laidOut(text, {338, 1'000}, environment).textBlock(0).lineCount(), 1U);
}

TEST(Leaves, TimersTakeTheWidthTheyAreOffered) {
    EnvironmentValues environment;
    environment.date.secondsSince1970 = 5;
    const AnyView timer = Text{.content = Date{0}};
    const LayoutTree tree = laidOut(timer, mediumWidget, environment);
    EXPECT_EQ(tree.node(0).frame.origin.x, 0);
    EXPECT_EQ(tree.node(0).frame.size.width, 338);
    const Size text = tree.textBlock(0).size();
    EXPECT_GT(text.width, 0);
    EXPECT_LT(text.width, 60);
    EXPECT_EQ(tree.node(0).frame.size.height, text.height);
    EXPECT_EQ(sizeOf(Text{.content = "0:05"}, mediumWidget, environment), text) << "it shows the time between";

    const AnyView wide = FlexibleFrame{.minWidth = infinity, .content = timer};
    EXPECT_EQ(laidOut(wide, mediumWidget, environment).node(1).frame.size, (Size{infinity, text.height}));
    EXPECT_EQ(laidOut(timer, {0, 158}, environment).node(0).frame.size.width, 0);
}

TEST(Leaves, TextsUseTheirFontOrTheEnvironments) {
    EnvironmentValues large;
    large.font = Font::system(40);
    const AnyView plain = Text{.content = "x"};
    const AnyView own = Text{.content = "x", .font = Font::system(20)};
    EXPECT_GT(sizeOf(plain, mediumWidget, large).height, sizeOf(plain, mediumWidget).height);
    EXPECT_EQ(sizeOf(own, mediumWidget, large), sizeOf(own, mediumWidget));
    const AnyView bold = Text{.content = "wwwwwwwwww", .font = Font::system(20), .fontWeight = Font::Weight::bold};
    const AnyView same = Text{.content = "wwwwwwwwww", .font = Font::system(20, Font::Weight::bold)};
    EXPECT_EQ(sizeOf(bold, mediumWidget), sizeOf(same, mediumWidget)) << "the text's weight replaces the font's";
}

}  // namespace
}  // namespace tavrin::layout
