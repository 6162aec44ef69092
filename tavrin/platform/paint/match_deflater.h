// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "tavrin/platform/paint/png_file.h"

namespace tavrin::paint {

/// Compresses the rows of a picture, which stand behind each other, as those of a PNG that are all under the filter of
/// that number: a zlib stream. Pixels are 0xAARRGGBB as the PNG has them, RGB or RGBA, 1 to 65,535 in a row.
///
/// It looks for repetitions as deflate knows them, but pixel by pixel rather than byte by byte: a third of the places,
/// and hardly any match that begins or ends within a pixel is worth more. For a match it looks at `mostLooks` places at
/// most. The same rows are the same bytes, on every machine.
[[nodiscard]] std::string deflateMatches(std::span<const std::uint32_t> pixels, std::size_t width, std::uint8_t filter,
                                         PngColorType colorType, int mostLooks);

}  // namespace tavrin::paint
