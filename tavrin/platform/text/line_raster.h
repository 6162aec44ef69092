// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include <cairo.h>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/text/glyph_masks.h"
#include "tavrin/platform/text/visual_line.h"

namespace tavrin::text {

/// A rectangle of pixels.
struct PixelBox {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    [[nodiscard]] bool isEmpty() const { return left >= right || top >= bottom; }
};

/// Gathers a line's glyphs into one mask and paints the current source through it.
class LineRaster {
public:
    explicit LineRaster(GlyphMasks& masks) : masks_(masks) {}

    /// Begins a line; only what stands in `clip` is gathered.
    void begin(const PixelBox& clip);
    /// Adds glyphs whose first pen stands at `pen`, in pixels. `scale` is pixels for each point.
    void add(const Piece& piece, double pixelsPerEm, double scale, Point pen);
    /// Paints with the current source; `cairo`'s user space must be pixels.
    void paint(cairo_t* cairo);

private:
    struct Placed {
        const GlyphMask* mask;
        int x;
        int y;
    };
    void blend(const Placed& placed, const PixelBox& box, std::size_t stride);

    GlyphMasks& masks_;
    PixelBox clip_;
    PixelBox extent_;
    std::vector<Placed> placed_;
    std::vector<std::uint8_t> coverage_;
};

}  // namespace tavrin::text
