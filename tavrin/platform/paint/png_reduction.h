// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/paint/png_file.h"

namespace tavrin::paint {

/// A picture as PNG samples: rows of whole bytes, each behind the filter number 0.
struct PngSamples {
    PngColorType colorType = PngColorType::rgba;
    int bitDepth = 8;
    std::size_t bytesPerRow = 0;  ///< with the filter number
    pool::Vector<std::uint8_t> rows;
    /// R, G, B of each palette entry; empty without a palette.
    std::vector<std::uint8_t> palette;
    /// Opacities of the first palette entries; the others are opaque.
    std::vector<std::uint8_t> paletteOpacities;
};

/// The plainest samples that hold the picture without loss: a palette of up to 256 colours with 1, 2, 4 or 8 bits a
/// pixel, gray, gray with alpha, RGB or RGBA.
[[nodiscard]] PngSamples reduceToPngSamples(const PixelBuffer& picture);
/// The picture as RGBA, whatever would do.
[[nodiscard]] PngSamples rgbaPngSamples(const PixelBuffer& picture);

}  // namespace tavrin::paint
