// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/paint/png_encoder.h"

namespace tavrin::paint {

/// A WebP picture has at most so many pixels a side.
inline constexpr int maximumWebpSide = 16383;

/// Throws `TavrinError` of kind "Render" where a picture has no pixels or is too large for a WebP.
void checkWebpSize(const PixelBuffer& picture);

/// How many times as long as painting a pixel compressing one without loss takes, roughly.
[[nodiscard]] std::uint64_t webpWeight(PngCompression compression);

/// The picture as a WebP file: without loss, compressed as thoroughly as is said, or, where there is a quality from 1
/// to 100, with loss in its colours and none in its opacity. The same bytes for the same pixels. Throws what
/// `checkWebpSize` does, and `std::bad_alloc`. Thread-safe.
[[nodiscard]] std::string encodeWebp(const PixelBuffer& picture, PngCompression compression,
                                     std::optional<int> quality = std::nullopt);

}  // namespace tavrin::paint
