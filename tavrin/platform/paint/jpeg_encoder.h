// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// What is asked for where nobody asks for another: hardly to be told from the picture.
inline constexpr int usualJpegQuality = 85;

/// The picture over white as a JPEG file, at a quality from 1 to 100. Each pixel keeps a colour of its own (4:4:4):
/// shared by neighbours, as is usual in photographs, it bleeds out of texts. The same bytes for the same pixels. Throws
/// `TavrinError` of kind "Render" for a picture without pixels, and `std::bad_alloc`. Thread-safe.
[[nodiscard]] std::string encodeJpeg(const PixelBuffer& picture, int quality = usualJpegQuality);

}  // namespace tavrin::paint
