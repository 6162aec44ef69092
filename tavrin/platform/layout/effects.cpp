// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/effects.h"

#include <cmath>
#include <numbers>

namespace tavrin::layout {
namespace {

/// Sine and cosine without the rounding errors that would make a quarter or half turn slightly oblique.
struct Turn {
    double sin;
    double cos;

    explicit Turn(double angle) : sin(settled(std::sin(angle))), cos(settled(std::cos(angle))) {}

private:
    static double settled(double value) {
        constexpr double error = 1e-9;
        const double whole = std::round(value);
        return std::abs(value - whole) < error ? whole : value;
    }
};

Effect drawn(const AffineTransform& transform) {
    const bool collapses = transform.xx * transform.yy == transform.xy * transform.yx;
    return isFinite(transform) && !collapses ? Effect(transform) : std::nullopt;
}

Effect rotated(double angle, Point anchor) {
    const Turn turn(angle);
    return drawn(around(anchor, {turn.cos, turn.sin, -turn.sin, turn.cos, 0, 0}));
}

}  // namespace

Point pointIn(const Rect& rect, UnitPoint point) {
    return {rect.origin.x + point.x * rect.size.width, rect.origin.y + point.y * rect.size.height};
}

double clockHandAngle(const ClockHandPeriod& period, const TimeZone& zone, Date now) {
    const double seconds = period.seconds();
    const double local = now.secondsSince1970 + zone.secondsFromUTC(now);
    if (seconds == 0 || !std::isfinite(seconds) || !std::isfinite(local)) return 0;
    return 2 * std::numbers::pi * (std::fmod(local, seconds) / seconds);
}

Effect effectOf(const Offset& offset, const Rect&, Date) { return drawn({1, 0, 0, 1, offset.x, offset.y}); }

Effect effectOf(const ScaleEffect& scale, const Rect& frame, Date) {
    return drawn(around(pointIn(frame, scale.anchor), {scale.x, 0, 0, scale.y, 0, 0}));
}

Effect effectOf(const RotationEffect& rotation, const Rect& frame, Date) {
    return rotated(rotation.angle, pointIn(frame, rotation.anchor));
}

Effect effectOf(const Rotation3DEffect& rotation, const Rect& frame, Date) {
    const Point anchor = pointIn(frame, rotation.anchor);
    const double length = std::hypot(rotation.axis.x, rotation.axis.y, rotation.axis.z);
    if (length == 0) return drawn(around(anchor, {}));
    const double x = rotation.axis.x / length;
    const double y = rotation.axis.y / length;
    const double z = rotation.axis.z / length;
    const Turn turn(rotation.angle);
    const double rest = 1 - turn.cos;
    return drawn(around(anchor, {turn.cos + x * x * rest, y * x * rest + z * turn.sin, x * y * rest - z * turn.sin,
                                 turn.cos + y * y * rest, 0, 0}));
}

Effect effectOf(const ClockHandRotationEffect& hand, const Rect& frame, Date now) {
    return rotated(clockHandAngle(hand.period, hand.timeZone, now), pointIn(frame, hand.anchor));
}

}  // namespace tavrin::layout
