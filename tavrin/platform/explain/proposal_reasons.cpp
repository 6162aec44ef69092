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

/// What a child that has its turn finds: "322 points of width (338 less 16 of spacing)".
std::string roomInWords(const PlacedTree& placed, Index stack, Axis axis, const layout::StackShare& share) {
    std::string text = fmt::format("{} points of {}", inWords(share.remainder), lengthAlong(axis));
    const double room = extent(placed.proposal(stack), axis).value_or(0);
    const double spacing = room - share.remainder;
    if (share.turn == 0 && spacing > 0 && share.remainder > 0)
        text += fmt::format(" ({} less {} of spacing)", inWords(room), inWords(spacing));
    return text;
}

std::string flexibilityInWords(double flexibility, Axis axis) {
    if (flexibility == 0) return fmt::format("its {} is fixed", lengthAlong(axis));
    if (std::isinf(flexibility)) return fmt::format("its {} may grow without end", lengthAlong(axis));
    return fmt::format("its {} may vary by {}", lengthAlong(axis), inWords(flexibility));
}

Reason shareReason(const PlacedTree& placed, Index stack, Index index, Axis axis) {
    const Proposal& proposal = placed.proposal(index);
    const layout::StackShare* const share = placed.share(index);
    if (!share) return unsharedReason(placed, stack, axis, proposal);

    const std::string stacked = capitalized(placed.called(stack));
    if (share->count == 1)
        return {"",
                fmt::format("{} has only this child and proposes it all its room: {}.", stacked, inWords(proposal))};
    const std::size_t left = share->count - share->turn;
    const std::string room = roomInWords(placed, stack, axis, *share);
    std::string turn;
    if (share->flexibility)
        turn = fmt::format("{} deals out its {}, the least flexible child first; this one ({}) comes {} of {}. ",
                           stacked, lengthAlong(axis), flexibilityInWords(*share->flexibility, axis),
                           ordinal(share->turn + 1), share->count);
    else
        turn = fmt::format("{} has no {} left beside its spacing. ", stacked, lengthAlong(axis));
    const std::string divided = left == 1 ? fmt::format("It gets all that is left, {}", room)
                                          : fmt::format("It gets an equal share of {} for {} children", room, left);
    const double proposed = extent(proposal, axis).value_or(0);
    const bool takesAll = std::abs(extent(placed.answer(index), axis) - proposed) < 0.005;
    return {!takesAll   ? ""
            : left == 1 ? "the rest, " + inWords(proposed)
                        : fmt::format("its share, {} of {}", inWords(proposed), inWords(share->remainder)),
            fmt::format("{}{}: {} is proposed.", turn, divided, inWords(proposal))};
}

/// What a flexible frame makes of one dimension of its proposal, where it changes it.
std::string clampInWords(std::string_view length, const std::optional<double>& proposed,
                         const std::optional<double>& inside) {
    if (!proposed || !inside || *proposed == *inside) return {};
    return fmt::format("the {} proposed to it, {}, is {} its {}{} of {}", length, inWords(*proposed),
                       *inside > *proposed ? "raised to" : "lowered to", *inside > *proposed ? "min" : "max",
                       length == "width" ? "Width" : "Height", inWords(*inside));
}

Reason frameReason(const PlacedTree& placed, Index frame, Index index) {
    const Proposal& outside = placed.proposal(frame);
    const Proposal& inside = placed.proposal(index);
    const std::string framed = capitalized(placed.called(frame));
    std::string changes;
    if (const auto* fixed = placed.view(frame).as<FixedFrame>()) {
        const Proposal given = layout::proposalInside(*fixed, {});
        if (given.width) append(changes, " and ", "its width of " + inWords(*given.width));
        if (given.height) append(changes, " and ", "its height of " + inWords(*given.height));
    } else {
        append(changes, ", and ", clampInWords("width", outside.width, inside.width));
        append(changes, ", and ", clampInWords("height", outside.height, inside.height));
        if (!changes.empty()) return {"", fmt::format("{} proposes {}: {}.", framed, inWords(inside), changes)};
    }
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
    const bool bothFinite =
        outside.width && outside.height && std::isfinite(*outside.width) && std::isfinite(*outside.height);
    const std::string rule = bothFinite ? mode == ContentMode::fit ? "the largest such size inside its proposal of"
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
            return {"", fmt::format("{} passes its proposal on to each child: {}.", called, proposed)};
        case ViewKind::geometryReader:
            return {"", fmt::format("{} proposes its size to its content: {}.", called, proposed)};
        case ViewKind::fixedFrame:
        case ViewKind::flexibleFrame: return frameReason(placed, *parent, index);
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
