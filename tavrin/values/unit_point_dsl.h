// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "tavrin/platform/foundation/note.h"
#include "tavrin/platform/ui/unit_point.h"
#include "tavrin/values/alignment_dsl.h"

namespace tavrin {

/// The places relative to a view's bounds that a document can name.
enum class UnitPointDSL : unsigned char {
    zero,
    center,
    leading,
    trailing,
    top,
    bottom,
    topLeading,
    topTrailing,
    bottomLeading,
    bottomTrailing,
};

template <>
struct Keywords<UnitPointDSL> : NamedKeywords<UnitPointDSL> {
    static constexpr std::string_view typeName = "UnitPointDSL";
    static constexpr UnitPointDSL defaultCase = UnitPointDSL::zero;
};

/// The platform's point of the same name: but for `zero` the place that the alignment of that name is.
[[nodiscard]] constexpr UnitPoint platformValue(UnitPointDSL point) {
    const std::optional<AlignmentDSL> namesake = enumeratorNamed<AlignmentDSL>(name(point));
    if (!namesake) return UnitPoint::zero;
    const Alignment place = platformValue(*namesake);
    return {fraction(place.horizontal), fraction(place.vertical)};
}

/// What authors should know of an effect's "anchor".
inline constexpr Note anchorNote{
    .text = "The point of the view that stays where it is.", .defaultValue = R"("center")", .example = R"("bottom")"};

/// An effect's anchor; where none is named, the centre.
[[nodiscard]] constexpr UnitPoint platformAnchor(const std::optional<UnitPointDSL>& anchor) {
    return anchor ? platformValue(*anchor) : UnitPoint::center;
}

}  // namespace tavrin
