// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tavrin::images {

/// What a PNG's header says.
struct PngHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint8_t bitDepth = 0;
    std::uint8_t colorType = 0;
    std::uint8_t interlaceMethod = 0;
};

/// The pixels, 0xAARRGGBB with premultiplied channels, of a PNG as icons mostly are: eight bits for each of red, green,
/// blue and opacity, in rows from top to bottom, of no more than a few megabytes, with nothing else in the file. Such a
/// one is unpacked at once, in half of the time that it takes row by row. None for every other file, damaged ones
/// too: the general decoder judges those. The header, and that its picture may be decoded, has been found out before.
[[nodiscard]] std::optional<std::vector<std::uint32_t>> plainPngPixels(std::string_view bytes, const PngHeader& header);

}  // namespace tavrin::images
