// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/modifier_rules.h"

#include <algorithm>
#include <cmath>

namespace tavrin::layout {
namespace {

bool isFinite(const std::optional<double>& length) { return length && std::isfinite(*length); }

/// A fixed frame's length, if it holds.
std::optional<double> fixed(const std::optional<double>& length) {
    return isFinite(length) && *length >= 0 ? length : std::nullopt;
}

/// The bounds of one dimension of a flexible frame, as they hold.
struct Bounds {
    std::optional<double> least;
    std::optional<double> greatest;

    Bounds(const std::optional<double>& minimum, const std::optional<double>& maximum)
        : least(bound(minimum)), greatest(bound(maximum)) {
        if (least && greatest) greatest = std::max(*least, *greatest);
    }

    static std::optional<double> bound(const std::optional<double>& length) {
        if (!length || std::isnan(*length)) return std::nullopt;
        return atLeastZero(*length);
    }

    [[nodiscard]] double clamp(double length) const {
        if (greatest) length = std::min(length, *greatest);
        if (least) length = std::max(length, *least);
        return length;
    }

    [[nodiscard]] std::optional<double> inside(const std::optional<double>& proposed) const {
        return proposed ? std::optional(clamp(*proposed)) : std::nullopt;
    }

    [[nodiscard]] std::optional<double> placedInside(const std::optional<double>& proposed, double own) const {
        const bool isBetween = (!least || *least < own) && (!greatest || own < *greatest);
        return !proposed && isBetween ? std::nullopt : std::optional(own);
    }

    [[nodiscard]] bool isEmpty() const { return !least && !greatest; }

    [[nodiscard]] double around(const std::optional<double>& proposed, double content) const {
        if (!proposed) return clamp(content);
        if (isEmpty()) return content;
        const double lowest = least ? *least : std::min(content, *greatest);
        const double highest = greatest ? *greatest : std::max(content, *least);
        return std::clamp(*proposed, lowest, highest);
    }
};

Bounds widthBounds(const FlexibleFrame& frame) { return {frame.minWidth, frame.maxWidth}; }
Bounds heightBounds(const FlexibleFrame& frame) { return {frame.minHeight, frame.maxHeight}; }

double finiteOrZero(double length) { return std::isfinite(length) ? length : 0; }

std::optional<double> less(const std::optional<double>& proposed, double insets) {
    return proposed ? std::optional(atLeastZero(*proposed - insets)) : std::nullopt;
}

}  // namespace

double atLeastZero(double length) { return std::max(0.0, length); }  // in this order NaN becomes 0 too

Proposal proposalInside(const FixedFrame& frame, const Proposal& proposal) {
    const auto width = fixed(frame.width);
    const auto height = fixed(frame.height);
    return {width ? width : proposal.width, height ? height : proposal.height};
}

Size answerAround(const FixedFrame& frame, Size content) {
    return {fixed(frame.width).value_or(content.width), fixed(frame.height).value_or(content.height)};
}

Proposal proposalInside(const FlexibleFrame& frame, const Proposal& proposal) {
    return {widthBounds(frame).inside(proposal.width), heightBounds(frame).inside(proposal.height)};
}

Proposal placedProposalInside(const FlexibleFrame& frame, const Proposal& proposal, Size own) {
    return {widthBounds(frame).placedInside(proposal.width, own.width),
            heightBounds(frame).placedInside(proposal.height, own.height)};
}

Size answerAround(const FlexibleFrame& frame, const Proposal& proposal, Size content) {
    return {widthBounds(frame).around(proposal.width, content.width),
            heightBounds(frame).around(proposal.height, content.height)};
}

bool isContradictory(const FlexibleFrame& frame) {
    const auto contradict = [](const std::optional<double>& minimum, const std::optional<double>& maximum) {
        const auto least = Bounds::bound(minimum);
        const auto greatest = Bounds::bound(maximum);
        return least && greatest && *least > *greatest;
    };
    return contradict(frame.minWidth, frame.maxWidth) || contradict(frame.minHeight, frame.maxHeight);
}

EdgeInsets insetsOf(const Padding& padding) {
    const auto& [top, leading, bottom, trailing] = padding.edges;
    const double length = finiteOrZero(padding.length);
    return {top ? length : 0, leading ? length : 0, bottom ? length : 0, trailing ? length : 0};
}

EdgeInsets insetsOf(const InsetPadding& padding) {
    const auto& [top, leading, bottom, trailing] = padding.insets;
    return {finiteOrZero(top), finiteOrZero(leading), finiteOrZero(bottom), finiteOrZero(trailing)};
}

Proposal proposalInside(const EdgeInsets& insets, const Proposal& proposal) {
    return {less(proposal.width, insets.leading + insets.trailing), less(proposal.height, insets.top + insets.bottom)};
}

Size answerAround(const EdgeInsets& insets, Size content) {
    return {atLeastZero(content.width + (insets.leading + insets.trailing)),
            atLeastZero(content.height + (insets.top + insets.bottom))};
}

Edges movedEdges(const AnyView& modifier) {
    const auto sides = [](bool horizontal, bool vertical) { return Edges{vertical, horizontal, vertical, horizontal}; };
    const auto insetSides = [](const EdgeInsets& insets) {
        return Edges{insets.top != 0, insets.leading != 0, insets.bottom != 0, insets.trailing != 0};
    };
    if (const auto* frame = modifier.as<FixedFrame>())
        return sides(fixed(frame->width).has_value(), fixed(frame->height).has_value());
    if (const auto* frame = modifier.as<FlexibleFrame>())
        return sides(!widthBounds(*frame).isEmpty(), !heightBounds(*frame).isEmpty());
    if (const auto* padding = modifier.as<Padding>()) return insetSides(insetsOf(*padding));
    if (const auto* padding = modifier.as<InsetPadding>()) return insetSides(insetsOf(*padding));
    return {};
}

double ratioOf(Size size) { return size.width == size.height ? 1 : size.width / size.height; }

bool isRatio(double ratio) { return std::isfinite(ratio) && ratio > 0; }

Proposal withRatio(double ratio, ContentMode mode, const Proposal& proposal) {
    if (!proposal.width && !proposal.height) return proposal;
    if (!proposal.width) return {*proposal.height * ratio, proposal.height};
    if (!proposal.height) return {proposal.width, *proposal.width / ratio};
    const bool tooWide = *proposal.width > *proposal.height * ratio;
    if (tooWide == (mode == ContentMode::fit)) return {*proposal.height * ratio, proposal.height};
    return {proposal.width, *proposal.width / ratio};
}

double alignedOffset(double room, double length, double fraction) {
    const double spare = room - length;
    return std::isfinite(spare) ? spare * fraction : 0;
}

Point alignedOffset(Size room, Size view, Alignment alignment) {
    return {alignedOffset(room.width, view.width, fraction(alignment.horizontal)),
            alignedOffset(room.height, view.height, fraction(alignment.vertical))};
}

}  // namespace tavrin::layout
