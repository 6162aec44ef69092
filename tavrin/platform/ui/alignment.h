// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/platform/foundation/enumerators.h"

namespace tavrin {

enum class HorizontalAlignment : unsigned char { leading, center, trailing };
enum class VerticalAlignment : unsigned char { top, center, bottom };

/// Where a view lies in a room larger or smaller than itself.
struct Alignment {
    HorizontalAlignment horizontal = HorizontalAlignment::center;
    VerticalAlignment vertical = VerticalAlignment::center;

    static const Alignment center;
    static const Alignment leading;
    static const Alignment trailing;
    static const Alignment top;
    static const Alignment bottom;
    static const Alignment topLeading;
    static const Alignment topTrailing;
    static const Alignment bottomLeading;
    static const Alignment bottomTrailing;

    friend bool operator==(const Alignment&, const Alignment&) = default;
};

inline constexpr Alignment Alignment::center{HorizontalAlignment::center, VerticalAlignment::center};
inline constexpr Alignment Alignment::leading{HorizontalAlignment::leading, VerticalAlignment::center};
inline constexpr Alignment Alignment::trailing{HorizontalAlignment::trailing, VerticalAlignment::center};
inline constexpr Alignment Alignment::top{HorizontalAlignment::center, VerticalAlignment::top};
inline constexpr Alignment Alignment::bottom{HorizontalAlignment::center, VerticalAlignment::bottom};
inline constexpr Alignment Alignment::topLeading{HorizontalAlignment::leading, VerticalAlignment::top};
inline constexpr Alignment Alignment::topTrailing{HorizontalAlignment::trailing, VerticalAlignment::top};
inline constexpr Alignment Alignment::bottomLeading{HorizontalAlignment::leading, VerticalAlignment::bottom};
inline constexpr Alignment Alignment::bottomTrailing{HorizontalAlignment::trailing, VerticalAlignment::bottom};

/// The share of spare room that lies before the view: 0, 0.5 or 1.
constexpr double fraction(HorizontalAlignment alignment) {
    using enum HorizontalAlignment;
    return EnumeratorTable<HorizontalAlignment, double>{{{leading, 0}, {center, 0.5}, {trailing, 1}}}[alignment];
}
constexpr double fraction(VerticalAlignment alignment) {
    using enum VerticalAlignment;
    return EnumeratorTable<VerticalAlignment, double>{{{top, 0}, {center, 0.5}, {bottom, 1}}}[alignment];
}

constexpr std::string_view name(Alignment alignment) {
    using Across = EnumeratorTable<HorizontalAlignment, std::string_view>;
    using enum HorizontalAlignment;
    constexpr EnumeratorTable<VerticalAlignment, Across> names{
        {{VerticalAlignment::top, {{{leading, "topLeading"}, {center, "top"}, {trailing, "topTrailing"}}}},
         {VerticalAlignment::center, {{{leading, "leading"}, {center, "center"}, {trailing, "trailing"}}}},
         {VerticalAlignment::bottom,
          {{{leading, "bottomLeading"}, {center, "bottom"}, {trailing, "bottomTrailing"}}}}}};
    return names[alignment.vertical][alignment.horizontal];
}

}  // namespace tavrin
