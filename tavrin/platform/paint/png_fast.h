#pragma once

#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// RGB or RGBA, every row as its difference to the row above, compressed while still in the processor's cache.
[[nodiscard]] std::string encodePngFast(const PixelBuffer& picture);

}  // namespace tavrin::paint
