// SPDX-License-Identifier: MIT
#include <cmath>

#include <fmt/format.h>

#include "tavrin/platform/explain/reasons.h"
#include "tavrin/platform/explain/words.h"
#include "tavrin/platform/layout/modifier_rules.h"

namespace tavrin::explain {
namespace {

using layout::Axis;
using layout::Proposal;
using Index = PlacedTree::Index;

/// The first letter of a sentence.
std::string capitalized(std::string text) {
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') text.front() += 'A' - 'a';
    return text;
}

/// Why a stack without bounded room has nothing to share out.
Reason unsharedReason(const PlacedTree& placed, Index stack, Axis axis, const Proposal& proposal) {
    const std::string_view length = lengthAlong(axis);
    const std::string stacked = capitalized(placed.called(stack));
    if (!extent(proposal, axis))
        return {fmt::format("ideal {}", length),
                fmt::format("{} is proposed no {}, so it asks each child for its ideal one: {}.", stacked, length,
                            inWords(proposal))};
    return {
        fmt::format("infinite {}", length),
        fmt::format("{} is offered infinite {} and offers it to each child: {}.", stacked, length, inWords(proposal))};
}

/// What a child that has its turn finds: "322 points of width (338 less 16 of spacing and 8 set aside)".
std::string roomInWords(const PlacedTree& placed, Index stack, Axis axis, const layout::StackShare& share) {
    std::string text = fmt::format("{} points of {}", inWords(share.remainder), lengthAlong(axis));
    if (share.turn > 0) return text;
    if (share.yields)
        return share.setAside > 0 ? fmt::format("{} ({} of them were set aside)", text, inWords(share.setAside)) : text;
    std::string taken;
    if (share.spacing != 0) append(taken, " and ", inWords(share.spacing) + " of spacing");
    if (share.setAside > 0) append(taken, " and ", inWords(share.setAside) + " set aside for what yields");
    const double room = extent(placed.proposal(stack), axis).value_or(0);
    return taken.empty() ? text : fmt::format("{} ({} less {})", text, inWords(room), taken);
}

std::string flexibilityInWords(double flexibility, Axis axis) {
    if (flexibility == 0) return fmt::format("its {} is fixed", lengthAlong(axis));
    if (std::isinf(flexibility)) return fmt::format("its {} may grow without end", lengthAlong(axis));
    return fmt::format("its {} may vary by {}", lengthAlong(axis), inWords(flexibility));
}

/// When a child has its turn, and why then.
std::string turnInWords(const std::string& stacked, const layout::StackShare& share, Axis axis) {
    const std::string_view length = lengthAlong(axis);
    const bool isAlone = share.count == share.siblings;
    const std::string_view group = isAlone        ? ""
                                   : share.yields ? " to what yields, after the others"
                                                  : " before anything that yields";
    if (share.count == 1 || !share.flexibility)
        return isAlone ? "" : fmt::format("{} offers its {}{}. ", stacked, length, group);
    return fmt::format("{} deals out its {}{}, the least flexible child first; this one ({}) comes {} of {}. ", stacked,
                       length, group, flexibilityInWords(*share.flexibility, axis), ordinal(share.turn + 1),
                       share.count);
}

Reason shareReason(const PlacedTree& placed, Index stack, Index index, Axis axis) {
    const Proposal& proposal = placed.proposal(index);
    const layout::StackShare* const share = placed.share(index);
    if (!share) return unsharedReason(placed, stack, axis, proposal);

    const std::string stacked = capitalized(placed.called(stack));
    if (share->siblings == 1)
        return {"",
                fmt::format("{} has only this child and proposes it all its room: {}.", stacked, inWords(proposal))};
    const std::string turn = turnInWords(stacked, *share, axis);
    if (share->remainder <= 0)
        return {"", fmt::format("{}{} has no {} left: {} is proposed.", turn, turn.empty() ? stacked : "The stack",
                                lengthAlong(axis), inWords(proposal))};
    const std::size_t left = share->count - share->turn;
    const std::string room = roomInWords(placed, stack, axis, *share);
    const std::string divided = left == 1 ? fmt::format("It gets all that is left, {}", room)
                                          : fmt::format("It gets an equal share of {} for {} children", room, left);
    const double proposed = extent(proposal, axis).value_or(0);
    const bool takesAll = std::abs(extent(placed.answer(index), axis) - proposed) < 0.005;
    return {!takesAll   ? ""
            : left == 1 ? "the rest, " + inWords(proposed)
                        : fmt::format("its share, {} of {}", inWords(proposed), inWords(share->remainder)),
            fmt::format("{}{}: {} is proposed.", turn, divided, inWords(proposal))};
}

Reason flexibleFrameReason(const PlacedTree& placed, Index frame, Index index) {
    const Proposal& inside = placed.proposal(index);
    const std::string framed = capitalized(placed.called(frame));
    if (!inside.width && !inside.height)
        return {"", fmt::format("{} was proposed no size, and no bound decides one: it proposes {}.", framed,
                                inWords(inside))};
    std::string unknown;
    if (!inside.width || !inside.height)
        unknown = fmt::format("; no {0}, since it was proposed none and no bound decides it",
                              inside.width ? "height" : "width");
    return {"", fmt::format("{} proposes its own size: {}{}.", framed, inWords(inside), unknown)};
}

Reason fixedFrameReason(const PlacedTree& placed, Index frame, Index index) {
    const Proposal& inside = placed.proposal(index);
    const std::string framed = capitalized(placed.called(frame));
    const Proposal given = layout::proposalInside(*placed.view(frame).as<FixedFrame>(), {});
    std::string changes;
    if (given.width) append(changes, " and ", "its width of " + inWords(*given.width));
    if (given.height) append(changes, " and ", "its height of " + inWords(*given.height));
    if (changes.empty()) return {"", fmt::format("{} passes its proposal on: {}.", framed, inWords(inside))};
    return {"", fmt::format("{} proposes {}: {}.", framed, inWords(inside), changes)};
}

Reason ratioReason(const PlacedTree& placed, Index modifier, Index index) {
    const auto& [ratio, mode, content] = *placed.view(modifier).as<AspectRatio>();
    const Proposal& outside = placed.proposal(modifier);
    const Proposal& inside = placed.proposal(index);
    const std::string called = capitalized(placed.called(modifier));
    if (outside == inside) return {"", fmt::format("{} passes its proposal on: {}.", called, inWords(inside))};
    const std::string kept = ratio ? "ratio " + inWords(*ratio) : "its content's own ratio";
    const std::string rule = outside.width && outside.height ? mode == ContentMode::fit
                                                                   ? "the largest such size inside its proposal of"
                                                                   : "the smallest such size around its proposal of"
                                                             : "as far as its proposal leads to one, out of";
    return {"", fmt::format("{} keeps {} ({}): it proposes {}, {} {}.", called, kept, name(mode), inWords(inside), rule,
                            inWords(outside))};
}

}  // namespace

Reason reasonOfProposal(const PlacedTree& placed, Index index) {
    const std::string proposed = inWords(placed.proposal(index));
    const std::optional<Index> parent = placed.parent(index);
    if (!parent) return {"", fmt::format("The widget proposes its size: {}.", proposed)};
    const std::string called = capitalized(placed.called(*parent));
    switch (placed.node(*parent).kind) {
        case ViewKind::vstack: return shareReason(placed, *parent, index, Axis::vertical);
        case ViewKind::hstack: return shareReason(placed, *parent, index, Axis::horizontal);
        case ViewKind::zstack:
            return {"", fmt::format("{} proposes its own size to each child: {}.", called, proposed)};
        case ViewKind::geometryReader:
            return {"", fmt::format("{} proposes its size to its content: {}.", called, proposed)};
        case ViewKind::fixedFrame: return fixedFrameReason(placed, *parent, index);
        case ViewKind::flexibleFrame: return flexibleFrameReason(placed, *parent, index);
        case ViewKind::padding:
        case ViewKind::insetPadding:
            return {"", fmt::format("{} takes its insets off {} and proposes {}.", called,
                                    inWords(placed.proposal(*parent)), proposed)};
        case ViewKind::aspectRatio: return ratioReason(placed, *parent, index);
        default: break;
    }
    if (placed.isSecondary(index))
        return {"", fmt::format("{} proposes the size of the view it belongs to: {}.", called, proposed)};
    return {"", fmt::format("{} passes its proposal on: {}.", called, proposed)};
}

}  // namespace tavrin::explain
