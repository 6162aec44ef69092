// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"

namespace tavrin {

/// A picture that somebody else owns: rows of premultiplied 0xAARRGGBB pixels, `stride` pixels from one to the next.
/// Both sides are at least 1.
struct PixelRows {
    const std::uint32_t* first;
    int width;
    int height;
    std::ptrdiff_t stride;
};

/// What each row of a scaled picture's part takes, in pixels painted; see `Meter`.
std::uint64_t scalingCostOfRow(const PixelRows& source, int width, int height, const PixelRect& part);

/// A part of a picture as it is when scaled to `width` x `height` pixels: each pixel is the average of the area that it
/// covers; along an axis that grows, pixels are interpolated linearly and the outermost ones repeated. `part` is not
/// empty and lies within the scaled picture. Counts its cost row by row.
std::vector<std::uint32_t> scaledPixels(const PixelRows& source, int width, int height, const PixelRect& part);

}  // namespace tavrin
