// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/kept_answers.h"

#include <cstdint>
#include <string>

#include "tavrin/platform/layout/layout_printer.h"
#include "tests/layout/laid_out.h"

// A tree that is laid out from an earlier one comes out as one that is not, and only what differs is asked.

namespace tavrin::layout {
namespace {

LayoutTree laidOutAfter(const LayoutTree* before, const AnyView& view, const EnvironmentValues& environment = {}) {
    return layOut(view, mediumWidget, environment, text::TextEngine::ofThisThread(), {}, Recording::answers, nullptr,
                  before);
}

AnyView label(const char* text) { return Text{.content = SharedText(text)}; }

/// Columns of texts between a text before them and one behind.
AnyView columns(const char* first, const char* inside, const char* last, Color color = Color::blue) {
    ViewList row{label(first)};
    for (int column = 0; column < 6; ++column) {
        ViewList texts;
        for (int line = 0; line < 4; ++line) texts.push_back(label(column == 3 && line == 2 ? inside : "12:30"));
        row.push_back(Background{.background = color,
                                 .content = FixedFrame{.width = 40, .content = VStack{.children = std::move(texts)}}});
    }
    row.push_back(label(last));
    return HStack{.spacing = 2, .children = std::move(row)};
}

AnyView limited(std::int64_t lines) { return LineLimit{.number = lines, .content = columns("two words", "a b", "c")}; }

AnyView reading(const char* text) {
    const auto content = [text](const GeometryProxy&) { return label(text); };
    return VStack{.children = {label("a"), Background{.background = GeometryReader{content}, .content = label("b")}}};
}

TEST(KeptAnswers, OnlyWhatDiffersIsAsked) {
    const struct {
        const char* why;
        AnyView before, now;
        double mostAsked;  ///< of what is asked without
    } rows[] = {
        {"an equal view", columns("a", "b", "c"), columns("a", "b", "c"), 0.01},
        {"another text in a column", columns("a", "b", "c"), columns("a", "d", "c"), 0.4},
        {"a wider text in a column", columns("a", "b", "c"), columns("a", "wide", "c"), 0.4},
        {"the last text", columns("a", "b", "c"), columns("a", "b", "longer"), 0.7},
        {"the first text, which moves all others", columns("a", "b", "c"), columns("longer", "b", "c"), 0.7},
        {"a colour behind", columns("a", "b", "c"), columns("a", "b", "c", Color::gray), 0.01},
        {"another limit of lines", limited(1), limited(2), 1},
        {"one view more", columns("a", "b", "c"), HStack{.children = {columns("a", "b", "c"), label("d")}}, 1},
        {"another kind of view", columns("a", "b", "c"), VStack{.children = {label("a")}}, 1},
        {"another content of a reader", reading("a"), reading("b"), 0.5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const LayoutTree before = laidOutAfter(nullptr, row.before);
        const LayoutTree fresh = laidOut(row.now);
        const LayoutTree now = laidOutAfter(&before, row.now);
        EXPECT_EQ(layoutTreeText(now), layoutTreeText(fresh));
        EXPECT_LE(static_cast<double>(now.answerCount()), row.mostAsked * static_cast<double>(fresh.answerCount()));
        // And what came out of an earlier one is an earlier one as good as any.
        const LayoutTree again = laidOutAfter(&now, row.before);
        EXPECT_EQ(layoutTreeText(again), layoutTreeText(before));
        EXPECT_LE(laidOutAfter(&again, row.before).answerCount(), before.answerCount() / 2);
    }
}

TEST(KeptAnswers, TellWhatTheyTake) {
    const LayoutTree few = laidOutAfter(nullptr, label("a"));
    // A shape between stacks is asked for many widths.
    AnyView view = label("some words");
    for (int level = 0; level < 12; ++level)
        view = level % 2 == 0 ? AnyView(HStack{.children = {view, Rectangle{}}})
                              : AnyView(VStack{.children = {view, Rectangle{}}});
    const LayoutTree many = laidOutAfter(nullptr, view);
    EXPECT_GT(few.answers()->byteCount(), sizeof(Proposal));
    EXPECT_GT(many.answers()->byteCount(), many.nodes().size() * sizeof(Proposal) + few.answers()->byteCount());
}

TEST(KeptAnswers, HoldAtTheSameScaleOnly) {
    const AnyView view = columns("a", "b", "c");
    const LayoutTree before = laidOutAfter(nullptr, view);
    EnvironmentValues coarse;
    coarse.displayScale = 1;
    EXPECT_EQ(layoutTreeText(laidOutAfter(&before, view, coarse)), layoutTreeText(laidOut(view, mediumWidget, coarse)));
}

TEST(KeptAnswers, AreNotMissedWhereNoneAreKept) {
    const AnyView view = columns("a", "b", "c");
    const LayoutTree before = laidOut(view);
    EXPECT_EQ(before.answers(), nullptr);
    EXPECT_EQ(layoutTreeText(laidOutAfter(&before, view)), layoutTreeText(before));
}

}  // namespace
}  // namespace tavrin::layout
