// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

enum class PngCompression : unsigned char {
    fast,      ///< half a millisecond for a widget: one filter, runs only
    balanced,  ///< less than three times slower, a fifth fewer bytes: what repeats nearby, one filter for photographs
    small,     ///< some twenty times slower, a third fewer bytes: palettes, grays, a choice of filters
};

/// The picture as a PNG file: at most 8 bits for each channel, without an alpha channel where every pixel is opaque,
/// the same bytes for the same pixels. Throws `TavrinError` of kind "Render" for a picture without pixels. Thread-safe.
[[nodiscard]] std::string encodePng(const PixelBuffer& picture, PngCompression compression = PngCompression::fast);

}  // namespace tavrin::paint
