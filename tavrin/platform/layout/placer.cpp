// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/placer.h"

#include <algorithm>
#include <cmath>

#include "tavrin/platform/layout/modifier_rules.h"
#include "tavrin/platform/layout/stack_children.h"

namespace tavrin::layout {
namespace {

/// Sums of opposite infinities are no places.
Point settled(Point place) { return {std::isnan(place.x) ? 0 : place.x, std::isnan(place.y) ? 0 : place.y}; }

Point operator+(Point a, Point b) { return settled({a.x + b.x, a.y + b.y}); }

Alignment secondaryAlignment(const AnyView& modifier) {
    const auto* background = modifier.as<Background>();
    return background ? background->alignment : modifier.as<Overlay>()->alignment;
}

/// The share of spare room before each child of a stack, across it.
double fractionAcross(const AnyView& stack) {
    const auto* vertical = stack.as<VStack>();
    return vertical ? fraction(vertical->alignment) : fraction(stack.as<HStack>()->alignment);
}

}  // namespace

void Placer::placeRoot() {
    if (tree_.node(0).absent) return;
    placeAligned(0, Proposal::of(tree_.widget()), {{}, tree_.widget()}, Alignment::center);
}

void Placer::placeContent(Index reader) {
    const Rect room = tree_.node(reader).frame;
    const Index content = tree_.content(reader);
    if (!tree_.node(content).absent) placeAligned(content, Proposal::of(room.size), room, Alignment::topLeading);
}

void Placer::placeAligned(Index child, const Proposal& proposal, const Rect& room, Alignment alignment) {
    const Size size = measurer_.answer(child, proposal);
    place(child, proposal, {room.origin + alignedOffset(room.size, size, alignment), size});
}

void Placer::place(Index index, Proposal proposal, Rect frame) {
    // Modifiers are taken in a loop: only stacks and second views are nested calls.
    while (true) {
        if (!tree_.placements_ && earlier_.isSamePlace(index, proposal, frame)) return placeAsBefore(index);
        LayoutNode& node = tree_.nodes_[index];
        node.frame = frame;
        if (tree_.placements_) note(index, proposal);
        if (proposals_ && index < proposals_->size()) (*proposals_)[index] = proposal;
        Index content = index + 1;
        switch (node.kind) {
            case ViewKind::vstack:
            case ViewKind::hstack: return placeRow(index, proposal, frame);
            case ViewKind::zstack: return placeLayers(index, frame);
            case ViewKind::text: return placeText(index, proposal);
            case ViewKind::background:
            case ViewKind::overlay:
                placeSecondary(index, frame);
                content = tree_.content(index);
                break;
            case ViewKind::fixedFrame: {
                const auto& room = *node.view->as<FixedFrame>();
                proposal = proposalInside(room, proposal);
                return placeAligned(content, proposal, frame, room.alignment);
            }
            case ViewKind::flexibleFrame: {
                const auto& room = *node.view->as<FlexibleFrame>();
                proposal = placedProposalInside(room, proposal, frame.size);
                return placeAligned(content, proposal, frame, room.alignment);
            }
            case ViewKind::padding:
            case ViewKind::insetPadding: {
                const auto* padding = node.view->as<Padding>();
                const EdgeInsets insets = padding ? insetsOf(*padding) : insetsOf(*node.view->as<InsetPadding>());
                proposal = proposalInside(insets, proposal);
                frame = {frame.origin + Point{insets.leading, insets.top}, measurer_.answer(content, proposal)};
                break;
            }
            case ViewKind::geometryReader: return placedReaders_.push_back(index);
            case ViewKind::aspectRatio: proposal = measurer_.proposalInside(index, proposal); break;
            case ViewKind::emptyView:
            case ViewKind::spacer:
            case ViewKind::image:
            case ViewKind::color:
            case ViewKind::linearGradient:
            case ViewKind::circle:
            case ViewKind::rectangle:
            case ViewKind::roundedRectangle:
            case ViewKind::capsule:
            case ViewKind::trimmedShape:
            case ViewKind::filledShape:
            case ViewKind::strokedShape: return;
            case ViewKind::link:
            case ViewKind::offset:
            case ViewKind::scaleEffect:
            case ViewKind::rotationEffect:
            case ViewKind::rotation3DEffect:
            case ViewKind::clockHandRotationEffect:
            case ViewKind::lineLimit:
            case ViewKind::zIndex:
            case ViewKind::foregroundColor:
            case ViewKind::border:
            case ViewKind::clipShape:
            case ViewKind::clipped:
            case ViewKind::cornerRadius:
            case ViewKind::opacity:
            case ViewKind::widgetURL:
            case ViewKind::composed: break;
        }
        index = content;
    }
}

/// A view with all it holds, where it lay in the earlier tree.
void Placer::placeAsBefore(Index index) {
    const LayoutTree& before = earlier_.tree();
    for (const Index end = tree_.node(index).end; index < end; ++index) {
        LayoutNode& node = tree_.nodes_[index];
        node.frame = before.node(index).frame;
        if (proposals_) (*proposals_)[index] = before.answers()->proposals[index];
        if (node.kind == ViewKind::text) tree_.texts_[node.detail].block = before.textBlock(index);
        if (node.kind == ViewKind::geometryReader && !node.absent) placedReaders_.push_back(index);
    }
}

void Placer::placeText(Index text, const Proposal& proposal) {
    tree_.texts_[tree_.node(text).detail].block = measurer_.textBlock(text, proposal);
}

void Placer::placeSecondary(Index modifier, const Rect& frame) {
    const Index secondary = tree_.secondary(modifier);
    if (tree_.node(secondary).absent) return;
    placeAligned(secondary, Proposal::of(frame.size), frame, secondaryAlignment(*tree_.node(modifier).view));
}

void Placer::placeLayers(Index zstack, const Rect& frame) {
    const Alignment alignment = tree_.node(zstack).view->as<ZStack>()->alignment;
    for (const Index child : tree_.presentChildren(zstack))
        placeAligned(child, Proposal::of(frame.size), frame, alignment);
}

void Placer::placeRow(Index stack, const Proposal& proposal, const Rect& frame) {
    const Axis axis = mainAxis(tree_.node(stack).kind);
    const double fractionBefore = fractionAcross(*tree_.node(stack).view);
    const std::span<const Index> children = tree_.presentChildren(stack);
    const std::size_t first = measurer_.shareOut(stack, proposal);
    if (tree_.placements_) noteShares(stack, extent(proposal, axis), first);
    double main = 0;
    for (std::size_t at = 0; at < children.size(); ++at) {
        if (at > 0) main += spacingBetween(tree_, stack, children[at - 1], children[at]);
        const Size size = measurer_.share(first + at).size;
        const Proposal proposed = withExtent(proposal, axis, measurer_.share(first + at).proposed);
        const double room = extent(frame.size, across(axis));
        const double cross = alignedOffset(room, extent(size, across(axis)), fractionBefore);
        place(children[at], proposed, {frame.origin + pointAlong(axis, main, cross), size});
        main += extent(size, axis);
    }
    measurer_.release(first);
}

void Placer::note(Index index, const Proposal& proposal) {
    pool::Vector<Proposal>& proposals = tree_.placements_->proposals;
    if (proposals.size() < tree_.nodes_.size()) proposals.resize(tree_.nodes_.size());
    proposals[index] = proposal;
}

void Placer::noteShares(Index stack, const std::optional<double>& room, std::size_t first) {
    if (!room || std::isinf(*room)) return;  // nothing is shared out then
    const std::span<const Index> children = tree_.presentChildren(stack);
    const auto yields = [&](Index child) { return tree_.node(child).yields; };
    const auto yielding = static_cast<std::size_t>(std::count_if(children.begin(), children.end(), yields));
    const std::size_t ordinary = children.size() - yielding;
    double setAside = 0;
    for (std::size_t at = 0; at < children.size(); ++at)
        if (yields(children[at])) setAside += measurer_.share(first + at).least;
    for (std::size_t turn = 0; turn < children.size(); ++turn) {
        const std::uint32_t at = measurer_.childInTurn(first + turn);
        const Measurer::Share& share = measurer_.share(first + at);
        StackShare& noted = tree_.placements_->shares[children[at]];
        noted.yields = turn >= ordinary;
        noted.turn = noted.yields ? turn - ordinary : turn;
        noted.count = noted.yields ? yielding : ordinary;
        noted.siblings = children.size();
        noted.spacing = tree_.container(stack).totalSpacing;
        noted.setAside = setAside;
        noted.remainder = share.remainder;
        if (share.hasTurn) noted.flexibility = share.flexibility;
    }
}

}  // namespace tavrin::layout
