// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

#include "tavrin/platform/foundation/geometry.h"

namespace tavrin {

/// x' = xx x + xy y + x0, y' = yx x + yy y + y0.
struct AffineTransform {
    double xx = 1;
    double yx = 0;
    double xy = 0;
    double yy = 1;
    double x0 = 0;
    double y0 = 0;

    friend bool operator==(const AffineTransform&, const AffineTransform&) = default;
};

constexpr Point operator*(const AffineTransform& t, Point p) {
    return {t.xx * p.x + t.xy * p.y + t.x0, t.yx * p.x + t.yy * p.y + t.y0};
}

/// First `inner`, then `outer`.
constexpr AffineTransform operator*(const AffineTransform& outer, const AffineTransform& inner) {
    const Point origin = outer * Point{inner.x0, inner.y0};
    return {outer.xx * inner.xx + outer.xy * inner.yx,
            outer.yx * inner.xx + outer.yy * inner.yx,
            outer.xx * inner.xy + outer.xy * inner.yy,
            outer.yx * inner.xy + outer.yy * inner.yy,
            origin.x,
            origin.y};
}

/// The transform with `anchor` staying where it is.
constexpr AffineTransform around(Point anchor, const AffineTransform& transform) {
    const Point moved = transform * anchor;
    AffineTransform result = transform;
    result.x0 += anchor.x - moved.x;
    result.y0 += anchor.y - moved.y;
    return result;
}

inline bool isFinite(const AffineTransform& t) {
    return std::isfinite(t.xx) && std::isfinite(t.yx) && std::isfinite(t.xy) && std::isfinite(t.yy) &&
           std::isfinite(t.x0) && std::isfinite(t.y0);
}

/// The smallest upright rectangle around a transformed one.
inline Rect boundingBox(const AffineTransform& transform, const Rect& rect) {
    const double right = rect.origin.x + rect.size.width;
    const double bottom = rect.origin.y + rect.size.height;
    const Point corners[] = {transform * rect.origin, transform * Point{right, rect.origin.y},
                             transform * Point{rect.origin.x, bottom}, transform * Point{right, bottom}};
    Point least = corners[0];
    Point greatest = corners[0];
    for (const Point& corner : corners) {
        least = {std::min(least.x, corner.x), std::min(least.y, corner.y)};
        greatest = {std::max(greatest.x, corner.x), std::max(greatest.y, corner.y)};
    }
    return {least, {greatest.x - least.x, greatest.y - least.y}};
}

}  // namespace tavrin
