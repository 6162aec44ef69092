// SPDX-License-Identifier: MIT
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tests/growth.h"
#include "tests/layout/laid_out.h"

// What layout costs, counted in sizes that parents ask of their children.

namespace tavrin::layout {
namespace {

double answersPerNode(const LayoutTree& tree) {
    return static_cast<double>(tree.answerCount()) / static_cast<double>(tree.nodes().size());
}

/// Columns in rows in columns …, each with what `beside` makes next to the nested one.
AnyView nested(int depth, const ViewList& beside, AnyView leaf = Rectangle{}) {
    AnyView view = std::move(leaf);
    for (int level = 0; level < depth; ++level) {
        ViewList children = beside;
        children.push_back(view);
        if (level % 2 == 0) {
            view = VStack{.children = std::move(children)};
        } else {
            view = HStack{.children = std::move(children)};
        }
    }
    return view;
}

TEST(Costs, NestedStacksCostPerNodeWhatFlatOnesDo) {
    const struct {
        const char* why;
        ViewList beside;
        double perNode;
    } rows[] = {
        {"alone", {}, 3},
        {"beside a fixed view", {framed(1, 1)}, 20},
        {"beside a shape", {Rectangle{}}, 20},
        {"beside a spacer", {Spacer{}}, 20},
        {"beside a text", {Text{.content = "x"}}, 20},
        {"beside several", {framed(1, 1), Text{.content = "some words"}, Rectangle{}, Spacer{}}, 30},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_LT(answersPerNode(laidOut(nested(100, row.beside))), row.perNode);
        EXPECT_LT(answersPerNode(laidOut(nested(500, row.beside))), row.perNode) << "however deep";
    }
}

TEST(Costs, ALeafUnderHundredStacksIsAskedAFewTimes) {
    // The same tree with and without one more modifier around the leaf: the difference is the leaf's own answers.
    const ViewList beside{framed(1, 1), Rectangle{}};
    const auto bare = laidOut(nested(100, beside)).answerCount();
    const auto wrapped = laidOut(nested(100, beside, FlexibleFrame{.content = Rectangle{}})).answerCount();
    EXPECT_LE(wrapped - bare, 25U);
}

TEST(Costs, FlatStacksAreLinear) {
    for (const int count : {10'000, 100'000}) {
        for (const AnyView& child :
             {AnyView(Rectangle{}), AnyView(Text{.content = "x"}), framed(1, 1), AnyView(Spacer{}),
              AnyView(HStack{.children = {Rectangle{}, Text{.content = "y"}}})}) {
            const AnyView stack = VStack{.spacing = 0, .children = ViewList(static_cast<std::size_t>(count), child)};
            const LayoutTree tree = laidOut(stack, {338, 1e7});  // enough that there is something to share out
            EXPECT_LT(answersPerNode(tree), 12);
        }
    }
}

/// At each level a column of ratios: every proposal to it leads to others for what is inside.
AnyView ratios(int depth, bool own) {
    AnyView view = HStack{.children = {Rectangle{}, framed(3, 1)}};
    for (int level = 0; level < depth; ++level) {
        const double ratio = 0.7 + 0.01 * level;
        const AnyView shaped = AspectRatio{.ratio = own ? std::nullopt : std::optional(ratio),
                                           .contentMode = level % 2 == 0 ? ContentMode::fit : ContentMode::fill,
                                           .content = view};
        ViewList children{Rectangle{}, shaped, framed(1 + level, 2)};
        if (level % 2 == 0) {
            view = VStack{.children = std::move(children)};
        } else {
            view = HStack{.children = std::move(children)};
        }
    }
    return view;
}

TEST(Costs, RatiosDoNotMultiplyTheWorkWithoutEnd) {
    for (const bool own : {false, true}) {
        for (const int depth : {10, 40, 500}) {
            SCOPED_TRACE(depth);
            try {
                Cost cost;
                const Metering metering(RenderBudget{.steps = 10'000'000}, cost);
                const LayoutTree tree = laidOut(ratios(depth, own));
            } catch (const TavrinError& error) {
                EXPECT_EQ(error.kind, "Budget");
                EXPECT_EQ(error.message, "the work takes more than 10000000 steps");
                EXPECT_EQ(depth, 500) << "these are laid out";
            }
        }
    }
}

TEST(Costs, DeepViewsNeedLittleStack) {
    constexpr auto depth = static_cast<int>(AnyView::maximumNesting) - 2;
    const auto wrapped = [](const auto& wrap) {
        AnyView view = framed(7, 9);
        for (int level = 0; level < depth; ++level) view = wrap(view);
        return view;
    };
    const struct {
        const char* why;
        AnyView view;
    } rows[] = {
        {"stacks", wrapped([](AnyView view) { return VStack{.children = {std::move(view)}}; })},
        {"rows of two", wrapped([](AnyView view) {
             return HStack{.spacing = 0, .children = {std::move(view), VStack{}}};
         })},
        {"layers", wrapped([](AnyView view) { return ZStack{.children = {std::move(view)}}; })},
        {"padding", wrapped([](AnyView view) { return Padding{.length = 0, .content = std::move(view)}; })},
        {"frames", wrapped([](AnyView view) { return FixedFrame{.content = std::move(view)}; })},
        {"flexible frames", wrapped([](AnyView view) { return FlexibleFrame{.content = std::move(view)}; })},
        {"ratios", wrapped([](AnyView view) { return AspectRatio{.content = std::move(view)}; })},
        {"fades", wrapped([](AnyView view) { return Opacity{.content = std::move(view)}; })},
        {"backgrounds", wrapped([](AnyView view) { return Background{.content = std::move(view)}; })},
        {"in backgrounds",
         wrapped([](AnyView view) { return Background{.background = std::move(view), .content = Color::blue}; })},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const LayoutTree tree = laidOut(row.view);
        std::size_t boxes = 0;
        for (const LayoutNode& node : tree.nodes()) {
            if (node.kind != ViewKind::rectangle) continue;
            ++boxes;
            EXPECT_EQ(node.frame, (Rect{{165.5, 74.5}, {7, 9}}));
        }
        EXPECT_EQ(boxes, 1U);
    }
}

TEST(Costs, NotingPlacementsAsksNothingMoreAndChangesNoPlace) {
    const ViewList beside{framed(1, 1), Text{.content = "some words"}, Rectangle{}, Spacer{}};
    const AnyView view = ZStack{.children = {nested(50, beside), GeometryReader{[](const GeometryProxy&) -> AnyView {
                                                 return HStack{.children = {Rectangle{}, Spacer{}}};
                                             }}}};
    const LayoutTree plain = laidOut(view);
    const LayoutTree noted =
        layOut(view, mediumWidget, {}, text::TextEngine::ofThisThread(), {}, Recording::placements);
    EXPECT_EQ(plain.placements(), nullptr);
    ASSERT_NE(noted.placements(), nullptr);
    EXPECT_EQ(noted.answerCount(), plain.answerCount());
    ASSERT_EQ(noted.nodes().size(), plain.nodes().size());
    EXPECT_EQ(noted.placements()->proposals.size(), noted.nodes().size());
    for (std::size_t at = 0; at < plain.nodes().size(); ++at)
        EXPECT_EQ(noted.nodes()[at].frame, plain.nodes()[at].frame) << at;
}

/// What laying a view out counts; of bytes what its tree holds.
Cost costOf(const AnyView& view) {
    Cost cost;
    const Metering metering({}, cost);
    const LayoutTree tree = laidOut(view);
    const Meter& meter = Meter::ofThisThread();
    return {.steps = meter.steps, .bytes = meter.bytes};
}

std::string repeated(std::string_view what, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += what;
    return text;
}

AnyView column(int count, const std::function<AnyView(int)>& child) {
    ViewList children;
    for (int i = 0; i < count; ++i) children.push_back(child(i));
    return VStack{.children = std::move(children)};
}

TEST(Costs, TextsAreLinear) {
    const auto textOf = [](std::string_view what) {
        return [what](int count) -> AnyView { return Text{.content = repeated(what, count)}; };
    };
    const std::string article = repeated("some words ", 500);
    const struct {
        const char* why;
        std::function<AnyView(int)> make;
    } rows[] = {
        {"words", textOf("some words ")},
        {"isolates", textOf("\u2068")},
        {"isolates side by side", textOf("\u2067a\u2069")},
        {"brackets", textOf("\u05D0()()")},
        {"a heap of marks", textOf("\u0301")},
        {"ends of lines", textOf("\n")},
        {"Thai without a blank", textOf("\u0E01")},
        {"an address without a blank", textOf("a.b/c-")},
        {"both directions in turn", textOf("a\u05D0")},
        {"fonts in turn", textOf("a\u0E01\u6C49\u0915")},
        {"different texts",
         [](int count) {
             return column(count, [](int i) -> AnyView { return Text{.content = std::to_string(100'000 + i)}; });
         }},
        {"one text in many places",
         [&](int count) { return column(count, [&](int) -> AnyView { return Text{.content = article}; }); }},
        {"one text in many widths",
         [&](int count) {
             return column(count, [&](int i) { return framed(100 + i, 50, Text{.content = article}); });
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::vector<double> steps;
        std::vector<double> bytes;
        for (const int count : {1'000, 2'000, 4'000}) {
            const Cost cost = costOf(row.make(count));
            steps.push_back(static_cast<double>(cost.steps));
            bytes.push_back(static_cast<double>(cost.bytes));
        }
        expectLinear("steps", steps, 0);
        expectLinear("bytes", bytes, bytes[2] / 32);
    }
}

TEST(Costs, TextsCostTheSameWhetherTheirShapesAreRememberedOrNot) {
    const AnyView view = column(4, [](int i) -> AnyView {
        return Text{.content = std::to_string(i) + repeated(" remembered or not", 100 * i)};
    });
    const auto in = [&](text::TextEngine& engine) {
        Cost cost;
        const Metering metering({}, cost);
        const LayoutTree tree = layOut(view, mediumWidget, {}, engine);
        return std::pair(Meter::ofThisThread().steps, Meter::ofThisThread().bytes);
    };
    text::TextEngine fresh(nullptr);
    const auto first = in(fresh);
    EXPECT_GT(first.first, 10'000U);
    EXPECT_EQ(in(fresh), first);
}

TEST(Costs, LongTextsAreShapedOnce) {
    // Together their shapes are more than an engine remembers.
    const auto times = [](int count) {
        return costOf(column(count, [](int i) -> AnyView {
            return Text{.content = static_cast<char>('a' + i % 4) + repeated(" of 63 KB", 7'000)};
        }));
    };
    const Cost once = times(4);
    const Cost often = times(200);
    EXPECT_LT(often.steps, 2 * once.steps);
    EXPECT_LT(often.bytes, 2 * once.bytes);
    EXPECT_LT(often.bytes, 32 << 20);
}

TEST(Costs, LinesThatAreKeptAreHeld) {
    const auto of = [](int lines) { return costOf(Text{.content = repeated("line\n", lines)}); };
    EXPECT_GT(of(20'000).bytes - of(10'000).bytes, 10'000 * 40);
}

}  // namespace
}  // namespace tavrin::layout
