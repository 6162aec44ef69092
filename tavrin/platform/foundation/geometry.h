// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// A width and a height in points. Any value is representable.
struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

/// A place in points; y grows downwards.
struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle in points, given by its top leading corner and its size.
struct Rect {
    Point origin;
    Size size;
    friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace tavrin
