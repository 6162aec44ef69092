// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/platform/foundation/affine_transform.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/ui/view_modifiers.h"

// How effects change the picture of their content, which lies in `frame`; nothing where it is not drawn at all.

namespace tavrin::layout {

using Effect = std::optional<AffineTransform>;

Effect effectOf(const Offset& offset, const Rect& frame, Date now);
Effect effectOf(const ScaleEffect& scale, const Rect& frame, Date now);
Effect effectOf(const RotationEffect& rotation, const Rect& frame, Date now);
Effect effectOf(const Rotation3DEffect& rotation, const Rect& frame, Date now);
Effect effectOf(const ClockHandRotationEffect& hand, const Rect& frame, Date now);

/// Whether a view type is one of the above.
template <class V>
concept EffectView = requires(const V& view, const Rect& frame, Date now) {
    effectOf(view, frame, now);
};

/// A place given relative to a rectangle.
Point pointIn(const Rect& rect, UnitPoint point);

/// By how much a clock's hand is turned at a moment, in radians; 0 for a period that does not turn.
double clockHandAngle(const ClockHandPeriod& period, const TimeZone& zone, Date now);

}  // namespace tavrin::layout
