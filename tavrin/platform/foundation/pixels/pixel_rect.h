// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

namespace tavrin {

/// The pixels with x0 <= x < x1 and y0 <= y < y1.
struct PixelRect {
    int x0 = 0;
    int y0 = 0;
    int x1 = 0;
    int y1 = 0;

    [[nodiscard]] constexpr bool empty() const { return x0 >= x1 || y0 >= y1; }
    [[nodiscard]] constexpr int width() const { return x1 - x0; }
    [[nodiscard]] constexpr int height() const { return y1 - y0; }
    /// How many pixels it has.
    [[nodiscard]] constexpr std::uint64_t area() const {
        return empty() ? 0 : static_cast<std::uint64_t>(width()) * static_cast<std::uint64_t>(height());
    }

    friend constexpr PixelRect intersection(const PixelRect& a, const PixelRect& b) {
        return {std::max(a.x0, b.x0), std::max(a.y0, b.y0), std::min(a.x1, b.x1), std::min(a.y1, b.y1)};
    }
    /// The smallest that holds both, of which none is empty.
    friend constexpr PixelRect united(const PixelRect& a, const PixelRect& b) {
        return {std::min(a.x0, b.x0), std::min(a.y0, b.y0), std::max(a.x1, b.x1), std::max(a.y1, b.y1)};
    }
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

}  // namespace tavrin
