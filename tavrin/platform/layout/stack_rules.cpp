// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <limits>

#include "tavrin/platform/layout/measurer.h"
#include "tavrin/platform/layout/modifier_rules.h"
#include "tavrin/platform/layout/stack_children.h"
#include "tavrin/platform/ui/primitive_views.h"

// How vertical and horizontal stacks share out their room.
//
// 1. Room that is absent or infinite along the stack is offered to each child as it is. Of any other, all spacing is
//    taken off first.
// 2. Some children yield (spacers and empty stacks). The least that they need is set aside, so that a text beside a
//    spacer is offered all the room but the spacer's minimum.
// 3. The other children share what remains. The least flexible comes first, since what it leaves can still be used by
//    those that bend; of two that grow without end, the one that needs more at least; else document order decides.
// 4. Each in turn is offered an equal part of the remainder for every child of its group that has none yet, though
//    never less than nothing, and takes what it answers. The remainder may fall below zero: then nothing is left for
//    others.
// 5. What was set aside is added to what remains, and those that yield share it by the same two rules.
//
// The stack is as long as its children and its spacing, and as wide across as its widest child.

namespace tavrin::layout {
namespace {

/// A flexibility as it is compared: differences that only arithmetic makes would put equal children out of order.
double compared(double flexibility) {
    constexpr double precision = 1e6;
    constexpr double coarse = 1e9;  // from here on, numbers are not that precise
    return std::abs(flexibility) < coarse ? std::round(flexibility * precision) / precision : flexibility;
}

}  // namespace

Size Measurer::stackAnswer(Index stack, const Proposal& proposal) {
    const Axis axis = mainAxis(tree_.node(stack).kind);
    const std::size_t first = shareOut(stack, proposal);
    double main = tree_.container(stack).totalSpacing;
    double cross = 0;
    for (std::size_t at = first; at < shares_.size(); ++at) {
        main += extent(shares_[at].size, axis);
        cross = std::max(cross, extent(shares_[at].size, across(axis)));
    }
    release(first);
    return sizeAlong(axis, atLeastZero(main), cross);
}

std::size_t Measurer::shareOut(Index stack, const Proposal& proposal) {
    const Axis axis = mainAxis(tree_.node(stack).kind);
    const std::span<const Index> children = tree_.presentChildren(stack);
    const std::size_t first = shares_.size();
    shares_.resize(first + children.size());
    order_.resize(first + children.size());

    const auto& room = extent(proposal, axis);
    if (!room || std::isinf(*room)) {
        for (std::size_t at = 0; at < children.size(); ++at) {
            shares_[first + at].proposed = room;
            shares_[first + at].size = answer(children[at], proposal);
        }
        return first;
    }
    const std::size_t yielding = putYieldingLast(first, stack);
    double setAside = 0;
    for (std::size_t turn = yielding; turn < order_.size(); ++turn) {
        Share& share = shares_[first + order_[turn]];
        share.least = leastAlong(axis, children[order_[turn]], proposal);
        setAside += share.least;
    }
    double remainder = *room - tree_.container(stack).totalSpacing - setAside;
    remainder = dealOut({first, first, yielding}, stack, proposal, remainder);
    dealOut({first, yielding, first + children.size()}, stack, proposal, remainder + setAside);
    return first;
}

void Measurer::release(std::size_t first) {
    shares_.resize(first);
    order_.resize(first);
}

/// Orders the children of a sharing: those that yield after the others, both in document order. Answers where the
/// first of them stands.
std::size_t Measurer::putYieldingLast(std::size_t first, Index stack) {
    const std::span<const Index> children = tree_.presentChildren(stack);
    std::size_t end = first;
    std::size_t firstYielding = first;
    for (const bool yields : {false, true}) {
        firstYielding = end;
        for (std::uint32_t at = 0; at < children.size(); ++at)
            if (tree_.node(children[at]).yields == yields) order_[end++] = at;
    }
    return firstYielding;
}

double Measurer::leastAlong(Axis axis, Index index, const Proposal& proposal) {
    const double least = extentAlong(axis, index, withExtent(proposal, axis, 0));
    return std::isfinite(least) ? least : 0;
}

void Measurer::sortByFlexibility(const Group& group, Index stack, const Proposal& proposal) {
    const Axis axis = mainAxis(tree_.node(stack).kind);
    const Proposal greatest = withExtent(proposal, axis, std::numeric_limits<double>::infinity());
    const std::span<const Index> children = tree_.presentChildren(stack);
    for (std::size_t turn = group.begin; turn < group.end; ++turn) {
        const Index child = children[order_[turn]];
        const double longest = extentAlong(axis, child, greatest);
        const double least = leastAlong(axis, child, proposal);  // asking may move the shares
        Share& share = shares_[group.first + order_[turn]];
        share.least = least;
        share.flexibility = compared(longest - least);
        share.hasTurn = true;
    }
    const auto at = [this](std::size_t place) { return order_.begin() + static_cast<std::ptrdiff_t>(place); };
    std::sort(at(group.begin), at(group.end), [&](std::uint32_t a, std::uint32_t b) {
        const Share& shareOfA = shares_[group.first + a];
        const Share& shareOfB = shares_[group.first + b];
        if (shareOfA.flexibility != shareOfB.flexibility) return shareOfA.flexibility < shareOfB.flexibility;
        if (std::isinf(shareOfA.flexibility) && shareOfA.least != shareOfB.least)
            return shareOfA.least > shareOfB.least;
        return a < b;
    });
}

/// Shares out a remainder among a group; answers what is left of it.
double Measurer::dealOut(const Group& group, Index stack, const Proposal& proposal, double remainder) {
    const Axis axis = mainAxis(tree_.node(stack).kind);
    const std::span<const Index> children = tree_.presentChildren(stack);
    // In which order nothing is dealt out, or everything to one child, makes no difference.
    if (remainder > 0 && group.end - group.begin > 1) sortByFlexibility(group, stack, proposal);
    for (std::size_t turn = group.begin; turn < group.end; ++turn) {
        const std::uint32_t at = order_[turn];
        const double proposed = atLeastZero(remainder / static_cast<double>(group.end - turn));
        const Size size = answer(children[at], withExtent(proposal, axis, proposed));
        Share& share = shares_[group.first + at];
        share.proposed = proposed;
        share.size = size;
        share.remainder = remainder;
        remainder -= extent(size, axis);
    }
    return remainder;
}

/// One dimension of an answer, without the work that only the other one needs.
double Measurer::extentAlong(Axis axis, Index index, const Proposal& proposal) {
    while (true) {
        const LayoutNode& node = tree_.node(index);
        if (node.kind == ViewKind::text && axis == Axis::horizontal && proposal.width == 0) return 0;
        if (const auto* frame = node.view->as<FixedFrame>()) {
            const Size unknown{-1, -1};
            const double given = extent(answerAround(*frame, unknown), axis);
            if (given >= 0) return given;
        }
        if (!traitsOf(node.kind).isTransparentToLayout) return extent(answer(index, proposal), axis);
        index = tree_.content(index);
    }
}

}  // namespace tavrin::layout
