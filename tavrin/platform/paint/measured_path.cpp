// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/measured_path.h"

#include <algorithm>
#include <cmath>

#include <cairo.h>

namespace tavrin::paint {
namespace {

/// Into so many chords a curve is cut to measure it: the outlines' curves turn by a right angle at most, and then the
/// chords are shorter by less than a thousandth.
constexpr int chords = 32;

Point between(Point a, Point b, double share) { return {std::lerp(a.x, b.x, share), std::lerp(a.y, b.y, share)}; }

Point pointAt(const std::array<Point, 4>& curve, double t) {
    const Point a = between(curve[0], curve[1], t);
    const Point b = between(curve[1], curve[2], t);
    const Point c = between(curve[2], curve[3], t);
    return between(between(a, b, t), between(b, c, t), t);
}

/// The curve from its start to a parameter.
std::array<Point, 4> beginning(const std::array<Point, 4>& curve, double t) {
    const Point a = between(curve[0], curve[1], t);
    const Point b = between(curve[1], curve[2], t);
    const Point ab = between(a, b, t);
    return {curve[0], a, ab, pointAt(curve, t)};
}

/// The curve from a parameter to its end.
std::array<Point, 4> ending(const std::array<Point, 4>& curve, double t) {
    const Point b = between(curve[1], curve[2], t);
    const Point c = between(curve[2], curve[3], t);
    return {pointAt(curve, t), between(b, c, t), c, curve[3]};
}

double distance(Point a, Point b) { return std::hypot(b.x - a.x, b.y - a.y); }

double chordLength(const std::array<Point, 4>& curve, int chord) {
    return distance(pointAt(curve, static_cast<double>(chord) / chords),
                    pointAt(curve, static_cast<double>(chord + 1) / chords));
}

}  // namespace

void MeasuredPath::line(Point to) {
    if (begun_) return add({end_, between(end_, to, 1.0 / 3), between(end_, to, 2.0 / 3), to});
    start_ = end_ = to;
    begun_ = true;
}

void MeasuredPath::curve(Point handle, Point otherHandle, Point to) { add({end_, handle, otherHandle, to}); }

void MeasuredPath::close() { line(start_); }

void MeasuredPath::add(const std::array<Point, 4>& points) {
    Piece piece{points, 0};
    for (int chord = 0; chord < chords; ++chord) piece.length += chordLength(points, chord);
    end_ = points.back();
    length_ += piece.length;
    if (piece.length > 0) pieces_.push_back(piece);
}

void MeasuredPath::appendPart(cairo_t* cairo, double from, double to) const {
    if (!(from < to)) return;
    const double begin = std::clamp(from, 0.0, 1.0) * length_;
    const double end = std::clamp(to, 0.0, 1.0) * length_;
    if (!(begin < end)) return;
    double before = 0;
    bool isFirst = true;
    for (const Piece& piece : pieces_) {
        const double after = before + piece.length;
        if (after > begin && before < end) {
            const std::array<Point, 4> part =
                piece.part(piece.parameterAt(begin - before), piece.parameterAt(end - before));
            if (isFirst) cairo_move_to(cairo, part[0].x, part[0].y);
            cairo_curve_to(cairo, part[1].x, part[1].y, part[2].x, part[2].y, part[3].x, part[3].y);
            isFirst = false;
        }
        before = after;
    }
}

double MeasuredPath::Piece::parameterAt(double reached) const {
    if (reached <= 0) return 0;
    for (int chord = 0; chord < chords; ++chord) {
        const double step = chordLength(points, chord);
        if (reached < step) return (chord + reached / step) / chords;
        reached -= step;
    }
    return 1;
}

std::array<Point, 4> MeasuredPath::Piece::part(double from, double to) const {
    std::array<Point, 4> result = points;
    if (to < 1) result = beginning(result, to);
    if (from > 0) result = ending(result, from / to);
    return result;
}

}  // namespace tavrin::paint
