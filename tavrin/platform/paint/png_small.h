// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// The plainest samples that hold the picture without loss, filtered where that makes them smaller, compressed
/// thoroughly.
[[nodiscard]] std::string encodePngSmall(const PixelBuffer& picture);

/// The rows alone, as RGBA: a zlib stream.
[[nodiscard]] std::string pngRowsSmall(const PixelBuffer& picture);

}  // namespace tavrin::paint
