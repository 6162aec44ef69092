// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/paint/png_file.h"

namespace tavrin::paint {

/// RGB or RGBA, every row as its difference to the row above, of which only runs are compressed.
[[nodiscard]] std::string encodePngFast(const PixelBuffer& picture);

/// The rows alone, as RGBA or, of an opaque picture, as RGB: a zlib stream, appended to `out`.
void appendPngRowsFast(const PixelBuffer& picture, PngColorType colorType, std::string& out);

}  // namespace tavrin::paint
