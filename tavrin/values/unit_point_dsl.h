// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "tavrin/platform/foundation/note.h"
#include "tavrin/platform/ui/unit_point.h"
#include "tavrin/values/text_conversion.h"

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
struct Keywords<UnitPointDSL> {
    static constexpr std::string_view typeName = "UnitPointDSL";
    static constexpr std::array<std::string_view, 10> raw{"zero",          "center",        "leading",    "trailing",
                                                          "top",           "bottom",        "topLeading", "topTrailing",
                                                          "bottomLeading", "bottomTrailing"};
    static constexpr UnitPointDSL defaultCase = UnitPointDSL::zero;
};

/// The platform's point of the same name.
[[nodiscard]] constexpr UnitPoint platformValue(UnitPointDSL point) {
    constexpr std::array values{UnitPoint::zero,          UnitPoint::center,      UnitPoint::leading,
                                UnitPoint::trailing,      UnitPoint::top,         UnitPoint::bottom,
                                UnitPoint::topLeading,    UnitPoint::topTrailing, UnitPoint::bottomLeading,
                                UnitPoint::bottomTrailing};
    return values[static_cast<std::size_t>(point)];
}

/// What authors should know of an effect's "anchor".
inline constexpr Note anchorNote{
    .text = "The point of the view that stays where it is.", .defaultValue = R"("center")", .example = R"("bottom")"};

/// An effect's anchor; where none is named, the centre.
[[nodiscard]] constexpr UnitPoint platformAnchor(const std::optional<UnitPointDSL>& anchor) {
    return anchor ? platformValue(*anchor) : UnitPoint::center;
}

}  // namespace tavrin
