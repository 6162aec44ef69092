// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/shape_path.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <optional>
#include <type_traits>

#include <cairo.h>

#include "tavrin/platform/paint/measured_path.h"

namespace tavrin::paint {
namespace {

/// How a corner's curve leaves a side: distances from the corner, in radii, of the leaving point and of the two handles
/// after it.
struct Leaving {
    double point;
    double first;
    double second;
};

constexpr Leaving roomy{1.528665, 1.088490, 0.868407};
/// Where half the side is just one radius.
constexpr Leaving tight{1, 0.96, 0.82};
/// The rest of a continuous corner: a curve between two points that mirror one another on the diagonal. Distances from
/// the corner along the side that is near and the other one.
constexpr Point nearSide{0.631494, 0.0749114};
constexpr Point nearSideHandle{0.372824, 0.169060};

/// The length, in radii, of the handles of a cubic that is nearly a quarter circle.
constexpr double kappa = 0.5522847;

/// `room`: half the side, in radii, at least 1.
Leaving leavingWithin(double room) {
    const double share = std::min((room - tight.point) / (roomy.point - tight.point), 1.0);
    return {std::min(room, roomy.point), std::lerp(tight.first, roomy.first, share),
            std::lerp(tight.second, roomy.second, share)};
}

/// Where a corner lies, and the unit vectors from it along the edges that come in and go out, with half their lengths.
struct Corner {
    Point place;
    Point in;
    Point out;
    double inRoom;
    double outRoom;
};

/// Clockwise from the bottom trailing one.
std::array<Corner, 4> cornersOf(const Rect& bounds) {
    const double left = bounds.origin.x;
    const double top = bounds.origin.y;
    const double right = left + bounds.size.width;
    const double bottom = top + bounds.size.height;
    const double halfWidth = bounds.size.width / 2;
    const double halfHeight = bounds.size.height / 2;
    return {{{{right, bottom}, {0, -1}, {-1, 0}, halfHeight, halfWidth},
             {{left, bottom}, {1, 0}, {0, -1}, halfWidth, halfHeight},
             {{left, top}, {0, 1}, {1, 0}, halfHeight, halfWidth},
             {{right, top}, {-1, 0}, {0, 1}, halfWidth, halfHeight}}};
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
void appendCorner(Path& path, const Corner& corner, double radius, RoundedCornerStyle style) {
    const auto at = [&](double in, double out) { return place(corner, {in, out}, radius); };
    if (style == RoundedCornerStyle::circular) {
        path.line(at(1, 0));
        path.curve(at(1 - kappa, 0), at(0, 1 - kappa), at(0, 1));
        return;
    }
    const Leaving in = leavingWithin(corner.inRoom / radius);
    const Leaving out = leavingWithin(corner.outRoom / radius);
    const auto& [along, across] = nearSide;
    const auto& [handleAlong, handleAcross] = nearSideHandle;
    path.line(at(in.point, 0));
    path.curve(at(in.first, 0), at(in.second, 0), at(along, across));
    path.curve(at(handleAlong, handleAcross), at(handleAcross, handleAlong), at(across, along));
    path.curve(at(0, out.second), at(0, out.first), at(0, out.point));
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
};

std::optional<Outline> outlineOf(const ClosedShape& shape, const Rect& bounds) {
    const auto& [origin, size] = bounds;
    const bool finite = std::isfinite(origin.x) && std::isfinite(origin.y) && std::isfinite(size.width) &&
                        std::isfinite(size.height) && std::isfinite(origin.x + size.width) &&
                        std::isfinite(origin.y + size.height);
    if (!finite || size.width <= 0 || size.height <= 0) return std::nullopt;

    const double largest = std::min(size.width, size.height) / 2;
    if (std::holds_alternative<Circle>(shape)) return Outline{squareIn(bounds), largest};
    if (const auto* capsule = std::get_if<Capsule>(&shape)) return Outline{bounds, largest, capsule->style};
    if (const auto* rounded = std::get_if<RoundedRectangle>(&shape)) {
        const double radius = rounded->cornerRadius > 0 ? std::min(rounded->cornerRadius, largest) : 0;
        return Outline{bounds, radius, rounded->style};
    }
    return Outline{bounds};
}

/// Writes the closed outline of bounds that have an area, clockwise: from the top leading corner, or where that is
/// round from the middle of the trailing side.
template <class Path>
void append(Path& path, const Outline& outline) {
    const auto& [box, radius, style] = outline;
    const auto corners = cornersOf(box);
    if (radius == 0) {
        for (const std::size_t i : {2U, 3U, 0U, 1U}) path.line(corners[i].place);
    } else {
        path.line({box.origin.x + box.size.width, box.origin.y + box.size.height / 2});
        for (const Corner& corner : corners) appendCorner(path, corner, radius, style);
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
        outline->style == RoundedCornerStyle::continuous ? roomy.point * outline->radius : outline->radius;
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
