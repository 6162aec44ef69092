// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrin::images {

/// How a camera was held: what must be done to the pixels it stored.
enum class Orientation : std::uint8_t {
    upright = 1,
    mirrored,
    upsideDown,
    mirroredUpsideDown,
    transposed,
    turnedLeft,  ///< to be turned right by a quarter
    transposedUpsideDown,
    turnedRight,  ///< to be turned left by a quarter
};

/// Whether width and height change places.
constexpr bool swapsSides(Orientation orientation) { return orientation >= Orientation::transposed; }

/// What the payload of a JPEG's APP1 segment says; upright when it is no EXIF or says nothing valid.
Orientation exifOrientation(std::string_view segment);

/// The upright picture of `width` x `height` stored pixels.
std::vector<std::uint32_t> uprightPixels(const std::vector<std::uint32_t>& pixels, int width, int height,
                                         Orientation orientation);

}  // namespace tavrin::images
