// SPDX-License-Identifier: MIT
#include "tavrin/images/exif_orientation.h"

#include <algorithm>
#include <cstddef>

namespace tavrin::images {
namespace {

/// The numbers of a TIFF structure, in its byte order; 0 past its end.
class Tiff {
public:
    explicit Tiff(std::string_view bytes) : bytes_(bytes), littleEndian_(bytes.starts_with("II")) {}

    [[nodiscard]] std::uint32_t number(std::size_t at, std::size_t length) const {
        if (at > bytes_.size() || length > bytes_.size() - at) return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < length; ++i) {
            const std::size_t place = littleEndian_ ? at + length - 1 - i : at + i;
            value = value << 8 | static_cast<std::uint8_t>(bytes_[place]);
        }
        return value;
    }

private:
    std::string_view bytes_;
    bool littleEndian_;
};

}  // namespace

Orientation exifOrientation(std::string_view segment) {
    constexpr std::string_view exif("Exif\0\0", 6);
    if (!segment.starts_with(exif)) return Orientation::upright;
    const Tiff tiff(segment.substr(exif.size()));
    constexpr std::uint32_t entryLength = 12;
    constexpr std::uint32_t orientationTag = 0x0112;
    constexpr std::uint32_t shortType = 3;
    const std::size_t directory = tiff.number(4, 4);
    // Of entries that the segment has no room for, none is read: a file may have thousands of segments.
    const std::size_t count = std::min<std::size_t>(tiff.number(directory, 2), segment.size() / entryLength);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + i * entryLength;
        if (tiff.number(entry, 2) != orientationTag) continue;
        const std::uint32_t value = tiff.number(entry + 8, 2);
        const bool isValid = tiff.number(entry + 2, 2) == shortType && value >= 1 && value <= 8;
        return isValid ? static_cast<Orientation>(value) : Orientation::upright;
    }
    return Orientation::upright;
}

std::vector<std::uint32_t> uprightPixels(const std::vector<std::uint32_t>& pixels, int width, int height,
                                         Orientation orientation) {
    using enum Orientation;
    const bool reversesRows = orientation == mirrored || orientation == upsideDown ||
                              orientation == transposedUpsideDown || orientation == turnedRight;
    const bool reversesColumns = orientation == upsideDown || orientation == mirroredUpsideDown ||
                                 orientation == turnedLeft || orientation == transposedUpsideDown;
    const std::ptrdiff_t along = reversesRows ? -1 : 1;
    const std::ptrdiff_t down = reversesColumns ? -std::ptrdiff_t{width} : std::ptrdiff_t{width};
    const std::uint32_t* corner =
        pixels.data() + (reversesRows ? width - 1 : 0) + (reversesColumns ? std::ptrdiff_t{height - 1} * width : 0);
    const bool swaps = swapsSides(orientation);
    const std::ptrdiff_t perColumn = swaps ? down : along;
    const std::ptrdiff_t perRow = swaps ? along : down;
    const std::ptrdiff_t columns = swaps ? height : width;
    const std::ptrdiff_t rows = swaps ? width : height;

    std::vector<std::uint32_t> turned(pixels.size());
    // In tiles, so that a turned picture's columns are read while they are in the cache.
    constexpr std::ptrdiff_t tile = 32;
    for (std::ptrdiff_t top = 0; top < rows; top += tile)
        for (std::ptrdiff_t left = 0; left < columns; left += tile)
            for (std::ptrdiff_t y = top; y < std::min(top + tile, rows); ++y)
                for (std::ptrdiff_t x = left; x < std::min(left + tile, columns); ++x)
                    turned[static_cast<std::size_t>(y * columns + x)] = corner[x * perColumn + y * perRow];
    return turned;
}

}  // namespace tavrin::images
