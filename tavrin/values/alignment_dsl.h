// SPDX-License-Identifier: MIT
#pragma once

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
struct Keywords<HorizontalAlignmentDSL> : NamedKeywords<HorizontalAlignmentDSL> {
    static constexpr std::string_view typeName = "HorizontalAlignmentDSL";
    static constexpr HorizontalAlignmentDSL defaultCase = HorizontalAlignmentDSL::center;
};

template <>
struct Keywords<VerticalAlignmentDSL> : NamedKeywords<VerticalAlignmentDSL> {
    static constexpr std::string_view typeName = "VerticalAlignmentDSL";
    static constexpr VerticalAlignmentDSL defaultCase = VerticalAlignmentDSL::center;
};

template <>
struct Keywords<AlignmentDSL> : NamedKeywords<AlignmentDSL> {
    static constexpr std::string_view typeName = "AlignmentDSL";
    static constexpr AlignmentDSL defaultCase = AlignmentDSL::center;
};

[[nodiscard]] constexpr HorizontalAlignment platformValue(HorizontalAlignmentDSL alignment) {
    return namesake<HorizontalAlignment>(alignment);
}
[[nodiscard]] constexpr VerticalAlignment platformValue(VerticalAlignmentDSL alignment) {
    return namesake<VerticalAlignment>(alignment);
}
[[nodiscard]] constexpr Alignment platformValue(AlignmentDSL alignment) {
    using enum AlignmentDSL;
    constexpr EnumeratorTable<AlignmentDSL, Alignment> values{{{center, Alignment::center},
                                                               {leading, Alignment::leading},
                                                               {trailing, Alignment::trailing},
                                                               {top, Alignment::top},
                                                               {bottom, Alignment::bottom},
                                                               {topLeading, Alignment::topLeading},
                                                               {topTrailing, Alignment::topTrailing},
                                                               {bottomLeading, Alignment::bottomLeading},
                                                               {bottomTrailing, Alignment::bottomTrailing}}};
    return values[alignment];
}

}  // namespace tavrin
