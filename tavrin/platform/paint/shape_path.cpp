#include "tavrin/platform/paint/shape_path.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <numbers>
#include <optional>
#include <type_traits>

#include <cairo.h>

#include "tavrin/platform/paint/measured_path.h"

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

/// Where an outline is written to: Cairo's current path.
class CairoPath {
public:
    explicit CairoPath(cairo_t* cairo) : cairo_(cairo) { cairo_new_sub_path(cairo); }
    void line(Point to) { cairo_line_to(cairo_, to.x, to.y); }
    void curve(Point handle, Point otherHandle, Point to) {
        cairo_curve_to(cairo_, handle.x, handle.y, otherHandle.x, otherHandle.y, to.x, to.y);
    }
    void close() { cairo_close_path(cairo_); }

private:
    cairo_t* cairo_;
};

template <class Path>
void appendCircularCorner(Path& path, const Corner& corner, double radius) {
    const auto at = [&](Point point) { return place(corner, point, radius); };
    path.line(at(onCircle(0)));
    for (const double angle : {0.0, rightAngle / 2}) {
        const double next = angle + rightAngle / 2;
        path.curve(at(circleHandle(angle, rightAngle / 2)), at(circleHandle(next, -rightAngle / 2)),
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

template <class Path>
void appendContinuousCorner(Path& path, const Corner& corner, double radius) {
    const CornerPoints points = fitted(corner, radius);
    const auto at = [&](std::size_t i) { return place(corner, points[i], radius); };
    path.line(at(0));
    path.curve(at(1), at(2), at(3));
    path.line(at(4));
    for (const std::size_t i : {std::size_t{5}, std::size_t{8}, std::size_t{11}})
        path.curve(at(i), at(i + 1), at(i + 2));
}

Rect squareIn(const Rect& bounds) {
    const auto& [origin, size] = bounds;
    const double side = std::min(size.width, size.height);
    return {{origin.x + (size.width - side) / 2, origin.y + (size.height - side) / 2}, {side, side}};
}

/// What a shape comes down to: a rectangle with round corners.
struct Outline {
    Rect bounds;
    double radius = 0;
    RoundedCornerStyle style = RoundedCornerStyle::circular;
    /// Which of `cornersOf` it begins with.
    std::size_t firstCorner = 0;
};

std::optional<Outline> outlineOf(const ClosedShape& shape, const Rect& bounds) {
    const auto& [origin, size] = bounds;
    const bool finite = std::isfinite(origin.x) && std::isfinite(origin.y) && std::isfinite(size.width) &&
                        std::isfinite(size.height) && std::isfinite(origin.x + size.width) &&
                        std::isfinite(origin.y + size.height);
    if (!finite || size.width <= 0 || size.height <= 0) return std::nullopt;

    const double largest = std::min(size.width, size.height) / 2;
    if (std::holds_alternative<Circle>(shape))
        return Outline{squareIn(bounds), largest, RoundedCornerStyle::circular, 1};
    if (const auto* capsule = std::get_if<Capsule>(&shape)) return Outline{bounds, largest, capsule->style};
    if (const auto* rounded = std::get_if<RoundedRectangle>(&shape)) {
        const double radius = rounded->cornerRadius > 0 ? std::min(rounded->cornerRadius, largest) : 0;
        return Outline{bounds, radius, rounded->style};
    }
    return Outline{bounds};
}

/// Writes the closed outline of bounds that have an area.
template <class Path>
void append(Path& path, const Outline& outline) {
    const auto& [box, radius, style, firstCorner] = outline;
    const std::array<Corner, 4> corners = cornersOf(box);
    if (radius == 0) {
        path.line(corners[3].place);
        for (std::size_t i = 0; i < 3; ++i) path.line(corners[i].place);
    } else {
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Corner& corner = corners[(firstCorner + i) % corners.size()];
            if (style == RoundedCornerStyle::continuous) {
                appendContinuousCorner(path, corner, radius);
            } else {
                appendCircularCorner(path, corner, radius);
            }
        }
    }
    path.close();
}

/// An outline, or the one that a part is taken of.
ClosedShape closedShape(const Shape& shape) {
    return std::visit(
        [](const auto& outline) -> ClosedShape {
            if constexpr (std::same_as<std::remove_cvref_t<decltype(outline)>, TrimmedShape>) {
                return outline.shape;
            } else {
                return outline;
            }
        },
        shape);
}

}  // namespace

Rect outlineBounds(const Shape& shape, const Rect& bounds) {
    return std::holds_alternative<Circle>(closedShape(shape)) ? squareIn(bounds) : bounds;
}

Shape grown(const Shape& shape, const Rect& bounds, double by) {
    const auto* rounded = std::get_if<RoundedRectangle>(&shape);
    const std::optional<Outline> outline = rounded ? outlineOf(*rounded, bounds) : std::nullopt;
    if (!outline || outline->radius == 0) return rounded ? Shape(Rectangle{}) : shape;
    return RoundedRectangle{outline->radius + by, rounded->style};
}

Size cornerExtent(const Shape& shape, const Rect& bounds) {
    const std::optional<Outline> outline = outlineOf(closedShape(shape), bounds);
    if (!outline) return {};
    // What is between the ends of a part may be anywhere.
    if (std::holds_alternative<TrimmedShape>(shape)) return {bounds.size.width / 2, bounds.size.height / 2};
    const double reach =
        outline->style == RoundedCornerStyle::continuous ? continuousReach * outline->radius : outline->radius;
    return {std::min(reach, outline->bounds.size.width / 2), std::min(reach, outline->bounds.size.height / 2)};
}

void appendOutline(cairo_t* cairo, const Shape& shape, const Rect& bounds) {
    const std::optional<Outline> outline = outlineOf(closedShape(shape), bounds);
    if (!outline) return;
    const auto* trimmed = std::get_if<TrimmedShape>(&shape);
    if (trimmed && !(trimmed->from <= 0 && trimmed->to >= 1)) {
        MeasuredPath path;
        append(path, *outline);
        return path.appendPart(cairo, trimmed->from, trimmed->to);
    }
    const Rect& box = outline->bounds;
    if (outline->radius == 0)
        return cairo_rectangle(cairo, box.origin.x, box.origin.y, box.size.width, box.size.height);
    CairoPath path(cairo);
    append(path, *outline);
}

}  // namespace tavrin::paint
