#include "tavrin/platform/foundation/pixels.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tavrin {
namespace {

/// 2^24 x 255 / alpha, rounded up: enough that every channel up to alpha is rounded as it should be.
constexpr auto reciprocals = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t alpha = 1; alpha < 256; ++alpha) table[alpha] = ((255U << 24) + (alpha - 1)) / alpha;
    return table;
}();

/// The four bytes R, G, B, A of a straight pixel as one little-endian word.
constexpr std::uint32_t swapRedBlue(std::uint32_t pixel) {
    return (pixel & 0xFF00FF00) | (pixel >> 16 & 0xFF) | (pixel & 0xFF) << 16;
}

std::uint32_t straightened(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    const auto channel = [&](unsigned shift) {
        const std::uint32_t value = std::min(pixel >> shift & 0xFF, alpha);
        return (value * reciprocals[alpha] + (1U << 23)) >> 24;
    };
    return packPixel(alpha, channel(16), channel(8), channel(0));
}

void storeWord(std::uint8_t* bytes, std::uint32_t word) { std::memcpy(bytes, &word, sizeof word); }

}  // namespace

bool allOpaque(const std::uint32_t* pixels, std::size_t count) {
    std::uint32_t common = 0xFF000000;
    for (std::size_t i = 0; i < count; ++i) common &= pixels[i];
    return common == 0xFF000000;
}

void premultiplyPixels(const std::uint8_t* bytes, std::uint32_t* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* pixel = bytes + 4 * i;
        pixels[i] = scalePixel(packPixel(0xFF, pixel[0], pixel[1], pixel[2]), pixel[3]);
    }
}

void straightenPixels(const std::uint32_t* pixels, std::uint8_t* bytes, std::size_t count) {
    // Most pixels are opaque: blocks without any others are only rearranged, which compilers vectorise.
    constexpr std::size_t block = 64;
    for (std::size_t begin = 0; begin < count; begin += block) {
        const std::size_t end = std::min(begin + block, count);
        if (allOpaque(pixels + begin, end - begin)) {
            for (std::size_t i = begin; i < end; ++i) storeWord(bytes + 4 * i, swapRedBlue(pixels[i]));
        } else {
            for (std::size_t i = begin; i < end; ++i) storeWord(bytes + 4 * i, swapRedBlue(straightened(pixels[i])));
        }
    }
}

}  // namespace tavrin
