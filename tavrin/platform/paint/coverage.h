// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/foundation/pixels/pixel_rect.h"

typedef struct _cairo cairo_t;

namespace tavrin::paint {

/// How much of each pixel of an area something covers, 0…255.
class Coverage {
public:
    /// What `draw` covers of `area` when it fills or strokes with Cairo, whose device space is the canvas's.
    Coverage(const PixelRect& area, bool antialiased, const std::function<void(cairo_t*)>& draw);

    [[nodiscard]] const PixelRect& area() const { return area_; }
    /// The row `y` of the canvas, from the area's first column on.
    [[nodiscard]] const std::uint8_t* row(int y) const {
        return bytes_.data() + static_cast<std::size_t>(y - area_.y0) * stride_;
    }

private:
    PixelRect area_;
    std::size_t stride_ = 0;
    pool::Vector<std::uint8_t> bytes_;
};

}  // namespace tavrin::paint
