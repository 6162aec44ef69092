// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// RGB or RGBA, of which what repeats is compressed; where little does, rows are filtered before.
[[nodiscard]] std::string encodePngBalanced(const PixelBuffer& picture);

/// The rows alone, as RGBA: a zlib stream.
[[nodiscard]] std::string pngRowsBalanced(const PixelBuffer& picture);

}  // namespace tavrin::paint
