// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

#include "tavrin/platform/ui/alignment.h"
#include "tavrin/values/text_conversion.h"

// Keywords for places, and the platform's values of the same names.

namespace tavrin {

enum class HorizontalAlignmentDSL : unsigned char { leading, center, trailing };
enum class VerticalAlignmentDSL : unsigned char { top, center, bottom };
enum class AlignmentDSL : unsigned char {
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
struct Keywords<HorizontalAlignmentDSL> {
    static constexpr std::string_view typeName = "HorizontalAlignmentDSL";
    static constexpr std::array<std::string_view, 3> raw{"leading", "center", "trailing"};
    static constexpr HorizontalAlignmentDSL defaultCase = HorizontalAlignmentDSL::center;
};

template <>
struct Keywords<VerticalAlignmentDSL> {
    static constexpr std::string_view typeName = "VerticalAlignmentDSL";
    static constexpr std::array<std::string_view, 3> raw{"top", "center", "bottom"};
    static constexpr VerticalAlignmentDSL defaultCase = VerticalAlignmentDSL::center;
};

template <>
struct Keywords<AlignmentDSL> {
    static constexpr std::string_view typeName = "AlignmentDSL";
    static constexpr std::array<std::string_view, 9> raw{"center",      "leading",       "trailing",
                                                         "top",         "bottom",        "topLeading",
                                                         "topTrailing", "bottomLeading", "bottomTrailing"};
    static constexpr AlignmentDSL defaultCase = AlignmentDSL::center;
};

[[nodiscard]] constexpr HorizontalAlignment platformValue(HorizontalAlignmentDSL alignment) {
    return static_cast<HorizontalAlignment>(alignment);
}
[[nodiscard]] constexpr VerticalAlignment platformValue(VerticalAlignmentDSL alignment) {
    return static_cast<VerticalAlignment>(alignment);
}
[[nodiscard]] constexpr Alignment platformValue(AlignmentDSL alignment) {
    constexpr std::array values{Alignment::center,      Alignment::leading,       Alignment::trailing,
                                Alignment::top,         Alignment::bottom,        Alignment::topLeading,
                                Alignment::topTrailing, Alignment::bottomLeading, Alignment::bottomTrailing};
    return values[static_cast<std::size_t>(alignment)];
}

}  // namespace tavrin
