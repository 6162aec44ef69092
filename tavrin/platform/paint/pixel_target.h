// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/paint/coverage.h"
#include "tavrin/platform/paint/pixel_source.h"

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace tavrin::paint {

/// Direct access to the pixels of the surface that Cairo draws on now, a layer's or the picture's, in the canvas's
/// pixels. Cairo must not draw while one exists.
class PixelTarget {
public:
    explicit PixelTarget(cairo_t* cairo);
    ~PixelTarget();
    PixelTarget(const PixelTarget&) = delete;
    PixelTarget& operator=(const PixelTarget&) = delete;

    /// The pixels that there are.
    [[nodiscard]] const PixelRect& bounds() const { return bounds_; }
    [[nodiscard]] std::uint32_t* pixel(int x, int y) const;

    /// Draws `source` over an area; what is out of bounds is left out.
    void fill(const PixelRect& area, const PixelSource& source) const;
    /// Draws `source` over an area as far as it is covered.
    void fill(const Coverage& coverage, const PixelSource& source) const;

private:
    cairo_surface_t* surface_;
    std::uint8_t* bytes_ = nullptr;
    int stride_ = 0;
    PixelRect bounds_;
};

/// The pixels that a clip with an outline will have to bring back: what was in an area before something was drawn.
class Backdrop {
public:
    /// Keeps the pixels of `target` in the area of `inside`, the outline's coverage, which lies within its bounds.
    Backdrop(const PixelTarget& target, Coverage inside);

    /// Brings the kept pixels back as far as the outline leaves them out.
    void restore(const PixelTarget& target) const;

private:
    Coverage inside_;
    std::vector<std::uint32_t> pixels_;
};

}  // namespace tavrin::paint
