// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/platform/foundation/geometry.h"

namespace tavrin::layout {

/// What a parent offers a child, in points. An absent dimension asks for the child's ideal, 0 for its least, infinity
/// for its greatest. Never NaN.
struct Proposal {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;

    /// A size that is offered as it is.
    static constexpr Proposal of(Size size) { return {size.width, size.height}; }

    friend bool operator==(const Proposal&, const Proposal&) = default;
};

enum class Axis : unsigned char { horizontal, vertical };

constexpr Axis across(Axis axis) { return axis == Axis::horizontal ? Axis::vertical : Axis::horizontal; }

constexpr double extent(Size size, Axis axis) { return axis == Axis::horizontal ? size.width : size.height; }

constexpr const std::optional<double>& extent(const Proposal& proposal, Axis axis) {
    return axis == Axis::horizontal ? proposal.width : proposal.height;
}

/// `proposal` with another extent along `axis`.
constexpr Proposal withExtent(Proposal proposal, Axis axis, std::optional<double> length) {
    (axis == Axis::horizontal ? proposal.width : proposal.height) = length;
    return proposal;
}

constexpr Size sizeAlong(Axis axis, double main, double cross) {
    return axis == Axis::horizontal ? Size{main, cross} : Size{cross, main};
}

constexpr Point pointAlong(Axis axis, double main, double cross) {
    return axis == Axis::horizontal ? Point{main, cross} : Point{cross, main};
}

}  // namespace tavrin::layout
