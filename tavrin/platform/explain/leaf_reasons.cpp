// SPDX-License-Identifier: MIT
#include <cmath>

#include <fmt/format.h>

#include "tavrin/platform/explain/reasons.h"
#include "tavrin/platform/explain/words.h"
#include "tavrin/platform/layout/leaf_rules.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin::explain {
namespace {

using layout::Proposal;
using Index = PlacedTree::Index;

Reason textReason(const PlacedTree& placed, Index index) {
    const text::TextBlock& block = placed.tree().textBlock(index);
    const Proposal& proposal = placed.proposal(index);
    const std::string lines = counted(block.lineCount(), "line", "lines");
    const auto limit = placed.tree().inherited(index).lineLimit;
    const bool isLimited = limit && block.lineCount() == static_cast<std::size_t>(*limit);
    const std::string answer = inWords(placed.answer(index));
    if (block.truncated()) {
        const std::string why = isLimited ? fmt::format("a lineLimit of {}", *limit)
                                          : fmt::format("the height of {}", inWords(proposal.height.value_or(0)));
        return {fmt::format("cut off after {} by {}", lines, isLimited ? "lineLimit" : "its height"),
                fmt::format("It answers {}: {} in a width of {}, cut off with \"…\" by {}.", answer, lines,
                            inWords(proposal.width.value_or(HUGE_VAL)), why)};
    }
    const bool isTimer = std::holds_alternative<Date>(placed.view(index).as<Text>()->content);
    if (isTimer && proposal.width)
        return {"a timer takes all its width",
                fmt::format("It answers {}: a timer takes all the width that it is proposed.", answer)};
    if (block.lineCount() > 1 && proposal.width && std::isfinite(*proposal.width))
        return {lines, fmt::format("It answers {}: {} in a width of {}.", answer, lines, inWords(*proposal.width))};
    return {lines, fmt::format("It answers {}, its size in {}.", answer, lines)};
}

Reason spacerReason(const PlacedTree& placed, Index index) {
    const auto& spacer = *placed.view(index).as<Spacer>();
    const auto axes = static_cast<layout::SpacerAxes>(placed.node(index).detail);
    const Proposal& proposal = placed.proposal(index);
    const double least = layout::spacerAnswer(spacer, layout::SpacerAxes::horizontal, {0, 0}).width;
    const bool isVertical = axes == layout::SpacerAxes::vertical;
    const auto& offered = isVertical ? proposal.height : proposal.width;
    const std::string rule = fmt::format("at least {}{}", inWords(least), spacer.minLength ? "" : " (the default)");
    const std::string_view taken = axes == layout::SpacerAxes::both ? "all that it is proposed"
                                   : isVertical                     ? "all the height that it is proposed and no width"
                                                                    : "all the width that it is proposed and no height";
    const bool isLeast = offered.value_or(0) <= least;
    return {isLeast ? "its least length" : "what is left",
            fmt::format("It answers {}: a spacer takes {}, {}.", inWords(placed.answer(index)), taken, rule)};
}

Reason fillingReason(const PlacedTree& placed, Index index, bool isSquare) {
    const Proposal& proposal = placed.proposal(index);
    const std::string_view absent = proposal.width && proposal.height ? "" : ", and 10 where nothing is proposed";
    const std::string_view rule =
        isSquare ? "a circle takes the largest square in its proposal" : "it takes what it is proposed";
    return {isSquare ? "a square" : "all it is proposed",
            fmt::format("It answers {}: {}{}.", inWords(placed.answer(index)), rule, absent)};
}

bool isCircle(const Shape& shape) {
    const Size square = layout::shapeAnswer(shape, {1, 2});
    return square.height == 1;
}

}  // namespace

Reason reasonOfLeaf(const PlacedTree& placed, Index index) {
    const AnyView& view = placed.view(index);
    switch (view.kind()) {
        case ViewKind::text: return textReason(placed, index);
        case ViewKind::spacer: return spacerReason(placed, index);
        case ViewKind::circle: return fillingReason(placed, index, true);
        case ViewKind::trimmedShape: return fillingReason(placed, index, isCircle(*view.as<TrimmedShape>()));
        case ViewKind::filledShape: return fillingReason(placed, index, isCircle(view.as<FilledShape>()->shape));
        case ViewKind::strokedShape: return fillingReason(placed, index, isCircle(view.as<StrokedShape>()->shape));
        case ViewKind::image:
            return {"all it is proposed",
                    fmt::format("It answers {}: what it is proposed, and the picture's own size where nothing is.",
                                inWords(placed.answer(index)))};
        default: return fillingReason(placed, index, false);
    }
}

}  // namespace tavrin::explain
