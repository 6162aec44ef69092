// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/ui/views.h"

typedef struct _cairo cairo_t;

namespace tavrin::paint {

/// The rectangle that a shape's outline touches: the bounds, or for a circle the square centred in them.
[[nodiscard]] Rect outlineBounds(const Shape& shape, const Rect& bounds);

/// How far from a corner of its outline bounds a shape's outline may leave the edges, in points: {0, 0} for a
/// rectangle, at most half the width and half the height.
[[nodiscard]] Size cornerExtent(const Shape& shape, const Rect& bounds);

/// The shape whose outline runs `by` points outside of another's, in outline bounds that are larger by as much on each
/// side; for continuous corners nearly so.
[[nodiscard]] Shape grown(const Shape& shape, const Rect& bounds, double by);

/// Appends a shape's outline, filling `bounds`, to Cairo's current path: closed, or the part that is left. A corner
/// radius is limited to 0…half the smaller side, and NaN counts as 0. Bounds without area or with a number that is not
/// finite append nothing.
void appendOutline(cairo_t* cairo, const Shape& shape, const Rect& bounds);

}  // namespace tavrin::paint
