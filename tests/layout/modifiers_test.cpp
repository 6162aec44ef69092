// SPDX-License-Identifier: MIT
#include <limits>

#include "tavrin/platform/layout/modifier_rules.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

TEST(Modifiers, FixedFrames) {
    expectFrames({
        {"centred in the widget", framed(100, 50), {{119, 54, 100, 50}, {119, 54, 100, 50}}},
        {"larger than the widget", framed(400, 200), {{-31, -21, 400, 200}, {-31, -21, 400, 200}}},
        {"an absent dimension is the content's", framed(100, absent), {{119, 0, 100, 158}, {119, 0, 100, 158}}},
        {"holds its content in the middle",
         framed(100, 50, framed(20, 10)),
         {{119, 54, 100, 50}, {159, 74, 20, 10}, {159, 74, 20, 10}}},
        {"or where it is aligned",
         FixedFrame{.width = 100, .height = 50, .alignment = Alignment::bottomTrailing, .content = framed(20, 10)},
         {{119, 54, 100, 50}, {199, 94, 20, 10}, {199, 94, 20, 10}}},
        {"larger content sticks out on both sides",
         framed(10, 10, framed(20, 30)),
         {{164, 74, 10, 10}, {159, 64, 20, 30}, {159, 64, 20, 30}}},
        {"a negative length counts as absent", framed(-5, 50), {{0, 54, 338, 50}, {0, 54, 338, 50}}},
        {"as does an infinite one", framed(infinity, 50), {{0, 54, 338, 50}, {0, 54, 338, 50}}},
        {"and one that is not a number", framed(nan, 50), {{0, 54, 338, 50}, {0, 54, 338, 50}}},
        {"0 is a length", framed(0, 50), {{169, 54, 0, 50}, {169, 54, 0, 50}}},
    });
}

TEST(Modifiers, FlexibleFramesAnswer) {
    using Width = std::optional<double>;
    const struct {
        const char* why;
        Width least, greatest, proposed;
        Width content;  // a fixed content of that width, or a shape
        double width;
        double contentWidth;
    } rows[] = {
        {"no bounds: the content's", {}, {}, 100, 30, 30, 30},
        {"a maximum above the proposal: the proposal", {}, 200, 100, 30, 100, 30},
        {"an infinite maximum fills", {}, infinity, 100, 30, 100, 30},
        {"a maximum below the proposal", {}, 60, 100, absent, 60, 60},
        {"a maximum below the content holds", {}, 20, 100, 30, 20, 30},
        {"content above the proposal, below the maximum", {}, 80, 20, 30, 30, 30},
        {"a minimum above the proposal", 150, {}, 100, 30, 150, 30},
        {"which the content is offered", 150, {}, 100, absent, 150, 150},
        {"a minimum below: content no larger than it", 20, {}, 100, 10, 20, 10},
        {"a minimum below: the content", 20, {}, 100, 50, 50, 50},
        {"a minimum below: no more than proposed", 20, {}, 100, 300, 100, 300},
        {"between both: the proposal", 20, 200, 100, 30, 100, 30},
        {"below both: the minimum", 20, 50, 10, absent, 20, 20},
        {"above both: the maximum", 20, 50, 100, absent, 50, 50},
        {"no proposal: the content", {}, infinity, absent, 30, 30, 30},
        {"no proposal: the content, at least the minimum", 40, {}, absent, absent, 40, 10},
        {"no proposal: the content, at most the maximum", {}, 5, absent, absent, 5, 10},
        {"infinite proposal: the maximum", {}, 70, infinity, 30, 70, 30},
        {"infinite proposal: the content above a minimum", 20, {}, infinity, 30, 30, 30},
        {"a minimum above the maximum holds", 90, 50, 100, absent, 90, 90},
        {"a negative minimum counts as 0", -10, {}, 0, 0, 0, 0},
        {"a negative maximum too", {}, -10, 100, absent, 0, 0},
        {"a minimum that is not a number is none", nan, {}, 100, 30, 30, 30},
        {"nor is such a maximum", 20, nan, 100, 50, 50, 50},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const FlexibleFrame frame{.minWidth = row.least, .maxWidth = row.greatest};
        const Proposal proposal{row.proposed, 20};
        const Proposal inside = proposalInside(frame, proposal);
        const Size content{row.content.value_or(inside.width.value_or(10)), 20};
        EXPECT_EQ(content.width, row.contentWidth);
        EXPECT_EQ(answerAround(frame, proposal, content).width, row.width);
        EXPECT_EQ(inside.height, 20);
        EXPECT_EQ(answerAround(frame, proposal, content).height, 20);
    }
}

TEST(Modifiers, FlexibleFramesAlign) {
    expectFrames({
        {"at a corner",
         FlexibleFrame{.maxWidth = infinity,
                       .maxHeight = infinity,
                       .alignment = Alignment::bottomTrailing,
                       .content = framed(20, 10)},
         {{0, 0, 338, 158}, {318, 148, 20, 10}, {318, 148, 20, 10}}},
        {"at a side of a minimum",
         FlexibleFrame{.minWidth = 50, .minHeight = 10, .alignment = Alignment::leading, .content = framed(20, 20)},
         {{144, 69, 50, 20}, {144, 69, 20, 20}, {144, 69, 20, 20}}},
    });
}

TEST(Modifiers, FlexibleFramesProposeTheirOwnSizeWhenPlaced) {
    const struct {
        const char* why;
        std::optional<double> least, greatest, proposed;
        double own;
        std::optional<double> inside;
    } rows[] = {
        {"what it was proposed", {}, infinity, 100, 100, 100},
        {"its content's size, where it is no larger", {}, {}, 100, 30, 30},
        {"its bound", {}, 60, 100, 60, 60},
        {"nothing where nothing was proposed", 20, 60, absent, 30, absent},
        {"also without bounds", {}, {}, absent, 30, absent},
        {"but a bound that decided", 20, 60, absent, 20, 20},
        {"on either side", 20, 60, absent, 60, 60},
        {"an endless bound decides nothing", {}, infinity, absent, 30, absent},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const FlexibleFrame frame{.minWidth = row.least, .maxWidth = row.greatest};
        EXPECT_EQ(placedProposalInside(frame, {row.proposed, 5}, {row.own, 5}), (Proposal{row.inside, 5}));
    }
    expectFrames({{"a circle is square in its frame's own width",
                   FlexibleFrame{.maxHeight = 40, .content = Circle{}},
                   {{149, 59, 40, 40}, {149, 59, 40, 40}}}});
}

TEST(Modifiers, ReportContradictoryFramesOnce) {
    const AnyView contradictory = FlexibleFrame{.minWidth = 90, .maxWidth = 50, .content = Rectangle{}};
    const AnyView fine = FlexibleFrame{.minWidth = 50, .maxWidth = 90, .minHeight = nan, .maxHeight = -1};
    std::vector<std::string> messages;
    const Diagnostics diagnostics = [&](std::string_view message) { messages.emplace_back(message); };
    layOut(HStack{.children = {contradictory, fine, Rectangle{}}}, mediumWidget, {}, text::TextEngine::ofThisThread(),
           diagnostics);
    EXPECT_THAT(messages, testing::ElementsAre(testing::HasSubstr("minimum is larger than its maximum")));
}

TEST(Modifiers, Padding) {
    const auto padded = [](Edges edges, double length, AnyView content = Rectangle{}) {
        return AnyView(Padding{.edges = edges, .length = length, .content = std::move(content)});
    };
    expectFrames({
        {"on all edges", padded(Edges::all, 10), {{0, 0, 338, 158}, {10, 10, 318, 138}}},
        {"on some", padded({.top = true, .leading = true}, 30), {{0, 0, 338, 158}, {30, 30, 308, 128}}},
        {"on none", padded({}, 30), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"around what is fixed",
         padded({.trailing = true}, 20, framed(40, 30)),
         {{139, 64, 60, 30}, {139, 64, 40, 30}, {139, 64, 40, 30}}},
        {"larger than the room leaves nothing inside",
         padded(Edges::all, 100),
         {{0, -21, 338, 200}, {100, 79, 138, 0}}},
        {"a negative one offers more", padded(Edges::all, -10), {{0, 0, 338, 158}, {-10, -10, 358, 178}}},
        {"but leaves no negative size",
         padded(Edges::all, -30, framed(20, 20)),
         {{169, 79, 0, 0}, {139, 49, 20, 20}, {139, 49, 20, 20}}},
        {"an infinite one pads nothing", padded(Edges::all, infinity), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"nor does one that is not a number", padded(Edges::all, nan), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
    });
}

TEST(Modifiers, AspectRatio) {
    using enum ContentMode;
    const auto shaped = [](std::optional<double> ratio, ContentMode mode, AnyView content = Rectangle{}) {
        return AnyView(AspectRatio{.ratio = ratio, .contentMode = mode, .content = std::move(content)});
    };
    expectFrames({
        {"the largest inside, by height", shaped(1.5, fit), {{50.5, 0, 237, 158}, {50.5, 0, 237, 158}}},
        {"the largest inside, by width", shaped(4, fit), {{0, 36.75, 338, 84.5}, {0, 36.75, 338, 84.5}}},
        {"the smallest outside, by width", shaped(1, fill), {{0, -90, 338, 338}, {0, -90, 338, 338}}},
        {"the smallest outside, by height", shaped(4, fill), {{-147, 0, 632, 158}, {-147, 0, 632, 158}}},
        {"answers with the content's answer",
         shaped(1, fit, framed(40, 20)),
         {{149, 69, 40, 20}, {149, 69, 40, 20}, {149, 69, 40, 20}}},
        {"the content's own ratio",
         shaped(absent, fit, FlexibleFrame{.minWidth = 30, .maxWidth = infinity, .content = Rectangle{}}),
         // ideal size 30 x 10
         {{0, 79 - 338 / 6.0, 338, 338 / 3.0},
          {0, 79 - 338 / 6.0, 338, 338 / 3.0},
          {0, 79 - 338 / 6.0, 338, 338 / 3.0}}},
        {"of a content without one",
         shaped(absent, fit, framed(0, 20)),
         {{169, 69, 0, 20}, {169, 69, 0, 20}, {169, 69, 0, 20}}},
        {"a ratio inside changes no ideal size, which is square",
         shaped(absent, fit, shaped(2, fit)),
         {{90, 39.5, 158, 79}, {90, 39.5, 158, 79}, {90, 39.5, 158, 79}}},
        {"equal sides are square, also of nothing",
         shaped(absent, fit, FlexibleFrame{.maxWidth = infinity, .maxHeight = infinity, .content = framed(0, 0)}),
         {{90, 0, 158, 158}, {90, 0, 158, 158}, {169, 79, 0, 0}, {169, 79, 0, 0}}},
        {"a picture that is missing has no ratio", shaped(absent, fit, Image{}), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"nor in modifiers",
         shaped(absent, fill, Opacity{.content = Image{}}),
         {{0, 0, 338, 158}, {0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"a ratio of 0 passes on", shaped(0, fit), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"as does a negative one", shaped(-1, fill), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"an infinite one", shaped(infinity, fill), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
        {"and one that is not a number", shaped(nan, fit), {{0, 0, 338, 158}, {0, 0, 338, 158}}},
    });
}

TEST(Modifiers, RatiosOfProposals) {
    using enum ContentMode;
    const struct {
        const char* why;
        double ratio;
        ContentMode mode;
        Proposal proposal, inside;
    } rows[] = {
        {"fit takes the width of what is too high", 2, fit, {100, 90}, {100, 50}},
        {"fit takes the height of what is too wide", 2, fit, {100, 20}, {40, 20}},
        {"fill takes the height of what is too high", 2, fill, {100, 90}, {180, 90}},
        {"fill takes the width of what is too wide", 2, fill, {100, 20}, {100, 50}},
        {"the height follows from the width", 2, fit, {100, absent}, {100, 50}},
        {"the largest in endless height", 2, fit, {100, infinity}, {100, 50}},
        {"around endless height all is endless", 2, fill, {100, infinity}, {infinity, infinity}},
        {"endless in both", 2, fit, {infinity, infinity}, {infinity, infinity}},
        {"what follows from endless is endless", 2, fit, {infinity, absent}, {infinity, infinity}},
        {"the width follows from the height", 2, fill, {absent, 30}, {60, 30}},
        {"nothing fits in nothing", 2, fit, {0, 30}, {0, 0}},
        {"nothing is filled around nothing", 2, fill, {0, 0}, {0, 0}},
        {"nothing follows from nothing", 2, fit, {absent, absent}, {absent, absent}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(withRatio(row.ratio, row.mode, row.proposal), row.inside);
    }
}

TEST(Modifiers, RatiosWithoutAProposal) {
    // A ratio around a ratio asks for its ideal size, which the inner one passes on: the shape's 10 x 10.
    const auto ideal = [](ContentMode mode) {
        const AnyView inner = AspectRatio{.ratio = 4, .contentMode = mode, .content = Rectangle{}};
        return laidOut(AspectRatio{.content = HStack{.spacing = 0, .children = {inner, framed(10, 1)}}}, {1000, 1000});
    };
    // So the row is 20 x 10 and its height 500, of which it offers 990 x 500 to the inner one.
    EXPECT_EQ(ideal(ContentMode::fit).node(2).frame.size, (Size{990, 247.5}));
    EXPECT_EQ(ideal(ContentMode::fill).node(2).frame.size, (Size{2000, 500}));
}

TEST(Modifiers, ChangeNoSize) {
    const AnyView box = framed(60, 40);
    for (const AnyView& view :
         {AnyView(Offset{.x = 50, .y = -20, .content = box}), AnyView(Opacity{.value = 0.5, .content = box}),
          AnyView(ClipShape{.shape = Circle{}, .content = box}), AnyView(Clipped{.content = box}),
          AnyView(CornerRadius{.radius = 9, .content = box}), AnyView(Border{.width = 5, .content = box}),
          AnyView(ZIndex{.value = 2, .content = box}), AnyView(LineLimit{.number = 1, .content = box}),
          AnyView(ForegroundColor{.color = Color::blue, .content = box})}) {
        SCOPED_TRACE(view.box().name());
        expectFrames(laidOut(view), {{139, 59, 60, 40}, {139, 59, 60, 40}, {139, 59, 60, 40}});
    }
}

TEST(Modifiers, SecondViews) {
    const AnyView box = framed(60, 40);
    expectFrames({
        {"a background is offered the content's size",
         Background{.background = Circle{}, .content = box},
         {{139, 59, 60, 40}, {149, 59, 40, 40}, {139, 59, 60, 40}, {139, 59, 60, 40}}},
        {"a larger overlay is centred over it",
         Overlay{.overlay = framed(100, 10), .content = box},
         {{139, 59, 60, 40}, {119, 74, 100, 10}, {119, 74, 100, 10}, {139, 59, 60, 40}, {139, 59, 60, 40}}},
        {"or lies where it is aligned",
         Overlay{.alignment = Alignment::topTrailing, .overlay = framed(20, 10), .content = box},
         {{139, 59, 60, 40}, {179, 59, 20, 10}, {179, 59, 20, 10}, {139, 59, 60, 40}, {139, 59, 60, 40}}},
        {"behind nothing is nothing", Background{.background = Circle{}, .content = EmptyView{}}, {none, none, none}},
        {"nothing behind a view leaves the view",
         Background{.background = EmptyView{}, .content = Rectangle{}},
         {{0, 0, 338, 158}, none, {0, 0, 338, 158}}},
    });
}

}  // namespace
}  // namespace tavrin::layout
