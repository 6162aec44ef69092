#pragma once

#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// RGB or RGBA, every row as its difference to the row above, of which only runs are compressed.
[[nodiscard]] std::string encodePngFast(const PixelBuffer& picture);

}  // namespace tavrin::paint
