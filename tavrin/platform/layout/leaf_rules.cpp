// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/leaf_rules.h"

#include <algorithm>
#include <cmath>
#include <variant>

namespace tavrin::layout {

Size fillingAnswer(const Proposal& proposal) { return {proposal.width.value_or(10), proposal.height.value_or(10)}; }

Size squareAnswer(const Proposal& proposal) {
    const auto [width, height] = fillingAnswer(proposal);
    const double side = std::min(width, height);
    return {side, side};
}

Size shapeAnswer(const Shape& shape, const Proposal& proposal) {
    const auto* trimmed = std::get_if<TrimmedShape>(&shape);
    const bool isCircle =
        trimmed ? std::holds_alternative<Circle>(trimmed->shape) : std::holds_alternative<Circle>(shape);
    return isCircle ? squareAnswer(proposal) : fillingAnswer(proposal);
}

Size imageAnswer(const Image& image, const Proposal& proposal) {
    const Bitmap* bitmap = image.bitmap.get();
    return {proposal.width.value_or(bitmap ? bitmap->width() : 0),
            proposal.height.value_or(bitmap ? bitmap->height() : 0)};
}

Size spacerAnswer(const Spacer& spacer, SpacerAxes axes, const Proposal& proposal) {
    const double given = spacer.minLength.value_or(8);
    const double least = std::isfinite(given) ? std::max(0.0, given) : 8;
    const auto taken = [least](const std::optional<double>& offered) { return std::max(least, offered.value_or(0)); };
    return {axes == SpacerAxes::vertical ? 0 : taken(proposal.width),
            axes == SpacerAxes::horizontal ? 0 : taken(proposal.height)};
}

}  // namespace tavrin::layout
