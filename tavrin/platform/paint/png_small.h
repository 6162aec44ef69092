#pragma once

#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// The plainest samples that hold the picture without loss, filtered and not, compressed thoroughly; the smaller
/// counts.
[[nodiscard]] std::string encodePngSmall(const PixelBuffer& picture);

}  // namespace tavrin::paint
