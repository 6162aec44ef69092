// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include <cairo.h>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/paint/text/glyph_masks.h"
#include "tavrin/platform/text/visual_line.h"

namespace tavrin::paint {

/// Gathers a line's glyphs into one mask and paints the current source through it.
class LineRaster {
public:
    explicit LineRaster(GlyphMasks& masks) : masks_(masks) {}

    /// Begins a line; only what stands in `clip` is gathered.
    void begin(const PixelRect& clip);
    /// Adds glyphs whose first pen stands at `pen`, in pixels. `scale` is pixels for each point.
    void add(const text::Piece& piece, double pixelsPerEm, double scale, Point pen);
    /// Paints with the current source; `cairo`'s user space must be pixels.
    void paint(cairo_t* cairo);

private:
    struct Placed {
        const GlyphMask* mask;
        int x;
        int y;
    };
    void blend(const Placed& placed, const PixelRect& box, std::size_t stride);

    GlyphMasks& masks_;
    PixelRect clip_;
    PixelRect extent_;
    std::vector<Placed> placed_;
    std::vector<std::uint8_t> coverage_;
};

}  // namespace tavrin::paint
