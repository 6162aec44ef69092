// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// A place relative to a view's bounds: (0, 0) is its top leading corner, (1, 1) its bottom trailing one.
struct UnitPoint {
    double x = 0;
    double y = 0;

    static const UnitPoint zero;
    static const UnitPoint center;
    static const UnitPoint leading;
    static const UnitPoint trailing;
    static const UnitPoint top;
    static const UnitPoint bottom;
    static const UnitPoint topLeading;
    static const UnitPoint topTrailing;
    static const UnitPoint bottomLeading;
    static const UnitPoint bottomTrailing;

    friend bool operator==(const UnitPoint&, const UnitPoint&) = default;
};

inline constexpr UnitPoint UnitPoint::zero{0, 0};
inline constexpr UnitPoint UnitPoint::center{0.5, 0.5};
inline constexpr UnitPoint UnitPoint::leading{0, 0.5};
inline constexpr UnitPoint UnitPoint::trailing{1, 0.5};
inline constexpr UnitPoint UnitPoint::top{0.5, 0};
inline constexpr UnitPoint UnitPoint::bottom{0.5, 1};
inline constexpr UnitPoint UnitPoint::topLeading{0, 0};
inline constexpr UnitPoint UnitPoint::topTrailing{1, 0};
inline constexpr UnitPoint UnitPoint::bottomLeading{0, 1};
inline constexpr UnitPoint UnitPoint::bottomTrailing{1, 1};

}  // namespace tavrin
