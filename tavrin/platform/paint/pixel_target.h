// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
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
    /// Only pixels of `window` are changed.
    PixelTarget(cairo_t* cairo, const PixelRect& window);
    ~PixelTarget();
    PixelTarget(const PixelTarget&) = delete;
    PixelTarget& operator=(const PixelTarget&) = delete;

    /// The pixels that may be changed.
    [[nodiscard]] const PixelRect& bounds() const { return bounds_; }
    [[nodiscard]] std::uint32_t* pixel(int x, int y) const;

    /// Draws `source` over an area; what is out of bounds is left out, and changes nothing of what is not.
    void fill(const PixelRect& area, const PixelSource& source) const;
    /// Draws `source` over an area as far as it is covered.
    void fill(const Coverage& coverage, const PixelSource& source) const;

private:
    cairo_surface_t* surface_;
    std::uint8_t* bytes_ = nullptr;
    int stride_ = 0;
    int left_ = 0;  // where the surface begins
    int top_ = 0;
    PixelRect bounds_;
};

/// The pixels that a clip with an outline will have to bring back: what was in an area before something was drawn.
class Backdrop {
public:
    /// Keeps those pixels within the bounds of `target` that `inside`, the outline's coverage, leaves out in part or
    /// altogether. What is the same in `around`, the backdrop of a clip around it, if any, is
    /// shared with it.
    Backdrop(const PixelTarget& target, const Coverage& inside, const Backdrop* around);

    /// Brings the kept pixels back as far as the outline leaves them out.
    void restore(const PixelTarget& target) const;

private:
    /// Neighbouring pixels of a row.
    struct Run {
        int x = 0;
        int y = 0;
        int count = 0;
        friend bool operator==(const Run&, const Run&) = default;
    };
    /// What an outline does not cover wholly.
    struct Outside {
        Outside(const Coverage& inside, const PixelRect& bounds);

        pool::Vector<Run> runs;
        pool::Vector<std::uint8_t> shares;  ///< how much of each of the runs' pixels is covered
        friend bool operator==(const Outside&, const Outside&) = default;
    };
    using Pixels = pool::Vector<std::uint32_t>;

    std::shared_ptr<const Outside> outside_;
    std::shared_ptr<const Pixels> pixels_;  ///< those of the runs
};

}  // namespace tavrin::paint
