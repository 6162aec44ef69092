// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "tavrin/platform/foundation/geometry.h"

typedef struct _cairo cairo_t;

namespace tavrin::paint {

/// One closed line of which a part can be taken, by its length.
class MeasuredPath {
public:
    /// The first one begins the path where it leads to.
    void line(Point to);
    void curve(Point handle, Point otherHandle, Point to);
    void close();

    /// Appends the part between two fractions of the whole length, clamped to 0…1, to Cairo's current path, as a line
    /// that is not closed. Nothing where `from` is not less than `to`.
    void appendPart(cairo_t* cairo, double from, double to) const;

private:
    /// A cubic curve; a straight line is one too.
    struct Piece {
        std::array<Point, 4> points;
        double length = 0;

        /// The parameter at which so much of the length is reached.
        [[nodiscard]] double parameterAt(double reached) const;
        /// The curve between two parameters.
        [[nodiscard]] std::array<Point, 4> part(double from, double to) const;
    };

    void add(const std::array<Point, 4>& points);

    std::vector<Piece> pieces_;
    Point start_;
    Point end_;
    bool begun_ = false;
    double length_ = 0;
};

}  // namespace tavrin::paint
