// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/kept_answers.h"

#include <concepts>
#include <variant>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::layout {
namespace {

/// Whether two values of a field are alike, whatever views they are.
template <class Value>
bool areAlikeOutside(const Value& a, const Value& b) {
    if constexpr (std::same_as<Value, AnyView> || std::same_as<Value, ViewList>)
        return true;
    else
        return a == b;
}

/// The same of views, whatever they hold.
template <class View>
bool areViewsAlikeOutside(const View& a, const View& b) {
    if constexpr (requires { a.isLike(b); })
        return a.isLike(b);
    else if constexpr (requires { View::fields; })
        return View::fields.apply(
            [&](const auto&... field) { return (areAlikeOutside(a.*field.member, b.*field.member) && ...); });
    else
        return a == b;
}

bool isTimer(const AnyView& text) { return std::holds_alternative<Date>(text.as<Text>()->content); }

/// Whether two nodes of one kind answer alike, if what they hold does.
bool answerAlike(const LayoutTree& before, const LayoutTree& now, LayoutTree::Index index) {
    const AnyView& a = *before.node(index).view;
    const AnyView& b = *now.node(index).view;
    switch (b.kind()) {
        case ViewKind::text:
            return before.shapedText(index) == now.shapedText(index) && isTimer(a) == isTimer(b) &&
                   before.inherited(index).lineLimit == now.inherited(index).lineLimit;
        case ViewKind::composed:        // as its body does
        case ViewKind::geometryReader:  // as a shape does
        case ViewKind::color:
        case ViewKind::linearGradient: return true;
        default: break;
    }
    if (&a.box() == &b.box()) return true;
    return visitPrimitive(b, [&]<class View>(const View& view) { return areViewsAlikeOutside(*a.as<View>(), view); });
}

}  // namespace

std::size_t KeptAnswers::byteCount() const {
    constexpr std::size_t entriesPerLines = 4;  // the lines of an answer take some times what it takes itself
    std::size_t count = proposals.capacity() * sizeof(Proposal) + containers.capacity() * sizeof(containers.front()) +
                        texts.capacity() * sizeof(TextAnswers);
    for (const AnswerMemory<Size>& memory : containers) count += memory.byteCount();
    for (const TextAnswers& text : texts) count += entriesPerLines * text.broken.byteCount();
    return count;
}

EarlierLayout::EarlierLayout(const LayoutTree& before, const LayoutTree& now) : before_(&before) {
    constexpr std::size_t nodesInStep = 4;
    if (before.nodes().empty() || !before.answers()) return;
    const Index count = now.node(0).end;
    Meter::ofThisThread().step(count / nodesInStep);
    if (before.node(0).end != count) return;
    for (Index index = 0; index < count; ++index) {
        const LayoutNode& a = before.node(index);
        const LayoutNode& b = now.node(index);
        if (a.kind != b.kind || a.end != b.end) return;
    }
    nextOther_.resize(count);
    Index next = count;
    for (Index index = count; index-- > 0;) {
        if (!answerAlike(before, now, index)) next = index;
        nextOther_[index] = next;
    }
}

bool EarlierLayout::isSamePlace(Index index, const Proposal& proposal, const Rect& frame) const {
    return isSame(index) && before_->node(index).frame == frame && before_->answers()->proposals[index] == proposal;
}

}  // namespace tavrin::layout
