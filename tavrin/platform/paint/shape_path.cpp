#include "tavrin/platform/paint/shape_path.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <optional>

#include <cairo.h>

namespace tavrin::paint {
namespace {

/// A corner in units of its radius: distances from the corner, along the edge that comes in and the edge that goes out.
/// The leaving point, a curve, a line, two curves that meet on the diagonal, and a curve to the other leaving point.
using CornerPoints = std::array<Point, 14>;
constexpr std::size_t diagonal = 7;

constexpr double continuousReach = 1.528665;

constexpr Point middle(Point a, Point b) { return {(a.x + b.x) / 2, (a.y + b.y) / 2}; }

constexpr CornerPoints continuousCorner = [] {
    // The curve across the diagonal, cut in half.
    constexpr Point from{0.631494, 0.074911};
    constexpr Point handle{0.372824, 0.169060};
    constexpr Point otherHandle{0.169060, 0.372824};
    constexpr Point to{0.074911, 0.631494};
    constexpr Point between = middle(handle, otherHandle);
    constexpr Point before = middle(middle(from, handle), between);
    constexpr Point after = middle(between, middle(otherHandle, to));
    return CornerPoints{{{continuousReach, 0},
                         {1.088493, 0},
                         {0.868407, 0},
                         {0.669934, 0.065496},
                         from,
                         middle(from, handle),
                         before,
                         middle(before, after),
                         after,
                         middle(otherHandle, to),
                         to,
                         {0, 0.868407},
                         {0, 1.088493},
                         {0, continuousReach}}};
}();

/// A point of the quarter circle, by the angle turned since it left the first edge.
Point onCircle(double angle) { return {1 - std::sin(angle), 1 - std::cos(angle)}; }

/// The handle of a curve along the quarter circle at one of its ends, for a curve that turns by `span` from there.
Point circleHandle(double angle, double span) {
    const double length = 4.0 / 3 * std::tan(span / 4);
    const Point point = onCircle(angle);
    return {point.x - length * std::cos(angle), point.y + length * std::sin(angle)};
}

constexpr double rightAngle = std::numbers::pi / 2;

/// The quarter circle in the pieces of a continuous corner, which turns into it where it has no room.
const CornerPoints& circularCorner() {
    static const CornerPoints points = [] {
        const double a = std::acos(1 - continuousCorner[4].y);
        const double b = rightAngle / 2;
        const double c = rightAngle - a;
        return CornerPoints{{onCircle(0), circleHandle(0, a), circleHandle(a, -a), onCircle(a), onCircle(a),
                             circleHandle(a, b - a), circleHandle(b, a - b), onCircle(b), circleHandle(b, c - b),
                             circleHandle(c, b - c), onCircle(c), circleHandle(c, a), circleHandle(rightAngle, -a),
                             onCircle(rightAngle)}};
    }();
    return points;
}

/// Where a corner lies, and the unit vectors from it along the edges that come in and go out, with half their lengths.
struct Corner {
    Point place;
    Point in;
    Point out;
    double inRoom;
    double outRoom;
};

std::array<Corner, 4> cornersOf(const Rect& bounds) {
    const double left = bounds.origin.x;
    const double top = bounds.origin.y;
    const double right = left + bounds.size.width;
    const double bottom = top + bounds.size.height;
    const double halfWidth = bounds.size.width / 2;
    const double halfHeight = bounds.size.height / 2;
    return {{{{right, top}, {-1, 0}, {0, 1}, halfWidth, halfHeight},
             {{right, bottom}, {0, -1}, {-1, 0}, halfHeight, halfWidth},
             {{left, bottom}, {1, 0}, {0, -1}, halfWidth, halfHeight},
             {{left, top}, {0, 1}, {1, 0}, halfHeight, halfWidth}}};
}

Point place(const Corner& corner, Point point, double radius) {
    const double in = point.x * radius;
    const double out = point.y * radius;
    return {corner.place.x + corner.in.x * in + corner.out.x * out,
            corner.place.y + corner.in.y * in + corner.out.y * out};
}

void appendCurve(cairo_t* cairo, Point handle, Point otherHandle, Point to) {
    cairo_curve_to(cairo, handle.x, handle.y, otherHandle.x, otherHandle.y, to.x, to.y);
}

void appendCircularCorner(cairo_t* cairo, const Corner& corner, double radius) {
    const auto at = [&](Point point) { return place(corner, point, radius); };
    const Point start = at(onCircle(0));
    cairo_line_to(cairo, start.x, start.y);
    for (const double angle : {0.0, rightAngle / 2}) {
        const double next = angle + rightAngle / 2;
        appendCurve(cairo, at(circleHandle(angle, rightAngle / 2)), at(circleHandle(next, -rightAngle / 2)),
                    at(onCircle(next)));
    }
}

/// The continuous corner; its half beside an edge that is too short for it is blended towards the circular one.
CornerPoints fitted(const Corner& corner, double radius) {
    const auto share = [&](double room) { return std::clamp((room / radius - 1) / (continuousReach - 1), 0.0, 1.0); };
    const double in = share(corner.inRoom);
    const double out = share(corner.outRoom);
    CornerPoints points = circularCorner();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double part = i < diagonal ? in : i > diagonal ? out : (in + out) / 2;
        points[i].x += part * (continuousCorner[i].x - points[i].x);
        points[i].y += part * (continuousCorner[i].y - points[i].y);
    }
    return points;
}

void appendContinuousCorner(cairo_t* cairo, const Corner& corner, double radius) {
    const CornerPoints points = fitted(corner, radius);
    const auto at = [&](std::size_t i) { return place(corner, points[i], radius); };
    cairo_line_to(cairo, at(0).x, at(0).y);
    appendCurve(cairo, at(1), at(2), at(3));
    cairo_line_to(cairo, at(4).x, at(4).y);
    for (const std::size_t i : {std::size_t{5}, std::size_t{8}, std::size_t{11}})
        appendCurve(cairo, at(i), at(i + 1), at(i + 2));
}

/// What a shape comes down to: a rectangle with round corners.
struct Outline {
    Rect bounds;
    double radius = 0;
    RoundedCornerStyle style = RoundedCornerStyle::circular;
};

std::optional<Outline> outlineOf(const Shape& shape, const Rect& bounds) {
    const auto& [origin, size] = bounds;
    const bool finite = std::isfinite(origin.x) && std::isfinite(origin.y) && std::isfinite(size.width) &&
                        std::isfinite(size.height) && std::isfinite(origin.x + size.width) &&
                        std::isfinite(origin.y + size.height);
    if (!finite || size.width <= 0 || size.height <= 0) return std::nullopt;

    const double largest = std::min(size.width, size.height) / 2;
    if (std::holds_alternative<Circle>(shape)) return Outline{outlineBounds(shape, bounds), largest};
    if (const auto* capsule = std::get_if<Capsule>(&shape)) return Outline{bounds, largest, capsule->style};
    if (const auto* rounded = std::get_if<RoundedRectangle>(&shape)) {
        const double radius = rounded->cornerRadius > 0 ? std::min(rounded->cornerRadius, largest) : 0;
        return Outline{bounds, radius, rounded->style};
    }
    return Outline{bounds};
}

}  // namespace

Rect outlineBounds(const Shape& shape, const Rect& bounds) {
    if (!std::holds_alternative<Circle>(shape)) return bounds;
    const auto& [origin, size] = bounds;
    const double side = std::min(size.width, size.height);
    return {{origin.x + (size.width - side) / 2, origin.y + (size.height - side) / 2}, {side, side}};
}

Shape grown(const Shape& shape, const Rect& bounds, double by) {
    const auto* rounded = std::get_if<RoundedRectangle>(&shape);
    const std::optional<Outline> outline = rounded ? outlineOf(shape, bounds) : std::nullopt;
    if (!outline || outline->radius == 0) return rounded ? Shape(Rectangle{}) : shape;
    return RoundedRectangle{outline->radius + by, rounded->style};
}

Size cornerExtent(const Shape& shape, const Rect& bounds) {
    const std::optional<Outline> outline = outlineOf(shape, bounds);
    if (!outline) return {};
    const double reach =
        outline->style == RoundedCornerStyle::continuous ? continuousReach * outline->radius : outline->radius;
    return {std::min(reach, outline->bounds.size.width / 2), std::min(reach, outline->bounds.size.height / 2)};
}

void appendOutline(cairo_t* cairo, const Shape& shape, const Rect& bounds) {
    const std::optional<Outline> outline = outlineOf(shape, bounds);
    if (!outline) return;
    const auto& [box, radius, style] = *outline;
    if (radius == 0) return cairo_rectangle(cairo, box.origin.x, box.origin.y, box.size.width, box.size.height);

    cairo_new_sub_path(cairo);
    const auto append = style == RoundedCornerStyle::continuous ? appendContinuousCorner : appendCircularCorner;
    for (const Corner& corner : cornersOf(box)) append(cairo, corner, radius);
    cairo_close_path(cairo);
}

}  // namespace tavrin::paint
