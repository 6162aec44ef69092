#include <algorithm>
#include <cmath>
#include <limits>

#include "tavrin/platform/layout/measurer.h"
#include "tavrin/platform/layout/modifier_rules.h"

// How vertical and horizontal stacks share out their room.

namespace tavrin::layout {
namespace {

Axis mainAxis(const LayoutNode& stack) { return stack.kind == ViewKind::vstack ? Axis::vertical : Axis::horizontal; }

}  // namespace

Size Measurer::stackAnswer(Index stack, const Proposal& proposal) {
    const Axis axis = mainAxis(tree_.node(stack));
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
    const LayoutNode& node = tree_.node(stack);
    const auto& item = tree_.container(stack);
    const std::size_t first = shares_.size();
    shares_.resize(first + item.count);
    order_.resize(first + item.count);
    for (Index at = 0; at < item.count; ++at) order_[first + at] = at;

    const auto& room = extent(proposal, mainAxis(node));
    if (!room || std::isinf(*room)) {
        const std::span<const Index> children = tree_.presentChildren(stack);
        for (Index at = 0; at < item.count; ++at) {
            const Size size = answer(children[at], proposal);
            shares_[first + at] = {room, size, 0};
        }
        return first;
    }
    const double remainder = atLeastZero(*room - item.totalSpacing);
    // In which order nothing is dealt out, or everything to one child, makes no difference.
    if (remainder > 0 && item.count > 1) findFlexibilities(first, stack, proposal);
    dealOut(first, stack, proposal, remainder);
    return first;
}

void Measurer::release(std::size_t first) {
    shares_.resize(first);
    order_.resize(first);
}

void Measurer::findFlexibilities(std::size_t first, Index stack, const Proposal& proposal) {
    const Axis axis = mainAxis(tree_.node(stack));
    const Proposal greatest = withExtent(proposal, axis, std::numeric_limits<double>::infinity());
    const Proposal least = withExtent(proposal, axis, 0);
    std::size_t at = first;
    for (const Index child : tree_.presentChildren(stack)) {
        const double flexibility = extentAlong(axis, child, greatest) - extentAlong(axis, child, least);
        shares_[at++].flexibility = std::isnan(flexibility) ? 0 : flexibility;
    }
    std::sort(order_.begin() + static_cast<std::ptrdiff_t>(first), order_.end(), [&](Index a, Index b) {
        const double flexibilityOfA = shares_[first + a].flexibility;
        const double flexibilityOfB = shares_[first + b].flexibility;
        return flexibilityOfA != flexibilityOfB ? flexibilityOfA < flexibilityOfB : a < b;
    });
}

void Measurer::dealOut(std::size_t first, Index stack, const Proposal& proposal, double remainder) {
    const Axis axis = mainAxis(tree_.node(stack));
    const std::span<const Index> children = tree_.presentChildren(stack);
    for (std::size_t dealt = 0; dealt < children.size(); ++dealt) {
        const Index at = order_[first + dealt];
        const double proposed = remainder / static_cast<double>(children.size() - dealt);
        const Size size = answer(children[at], withExtent(proposal, axis, proposed));
        shares_[first + at].proposed = proposed;
        shares_[first + at].size = size;
        remainder = atLeastZero(remainder - extent(size, axis));
    }
}

/// One dimension of an answer, without the work that only the other one needs.
double Measurer::extentAlong(Axis axis, Index index, const Proposal& proposal) {
    while (true) {
        const LayoutNode& node = tree_.node(index);
        switch (node.kind) {
            case ViewKind::text:
                if (axis == Axis::horizontal && proposal.width == 0) return 0;
                return extent(answer(index, proposal), axis);
            case ViewKind::fixedFrame: {
                const Size unknown{-1, -1};
                const double given = extent(answerAround(*node.view->as<FixedFrame>(), unknown), axis);
                if (given >= 0) return given;
                return extent(answer(index, proposal), axis);
            }
            case ViewKind::link:
            case ViewKind::offset:
            case ViewKind::scaleEffect:
            case ViewKind::rotationEffect:
            case ViewKind::rotation3DEffect:
            case ViewKind::clockHandRotationEffect:
            case ViewKind::lineLimit:
            case ViewKind::zIndex:
            case ViewKind::foregroundColor:
            case ViewKind::background:
            case ViewKind::overlay:
            case ViewKind::border:
            case ViewKind::opacity:
            case ViewKind::widgetURL: index = tree_.content(index); break;
            default: return extent(answer(index, proposal), axis);
        }
    }
}

}  // namespace tavrin::layout
