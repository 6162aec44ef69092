// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/pixels/pixels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little, "bytes are read as little-endian words");

namespace tavrin {
namespace {

/// 2^24 x 255 / alpha, rounded up: enough that every channel up to alpha is rounded as it should be.
constexpr auto reciprocals = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t alpha = 1; alpha < 256; ++alpha) table[alpha] = ((255U << 24) + (alpha - 1)) / alpha;
    return table;
}();

}  // namespace

bool allOpaque(const std::uint32_t* pixels, std::size_t count) {
    std::uint32_t common = 0xFF000000;
    for (std::size_t i = 0; i < count; ++i) common &= pixels[i];
    return common == 0xFF000000;
}

void premultiplyPixels(const std::uint8_t* bytes, std::uint32_t* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;  // 0xAABBGGRR; compilers vectorise what is done with whole words
        std::memcpy(&pixel, bytes + 4 * i, sizeof pixel);
        const std::uint32_t opaque = packPixel(0xFF, pixel & 0xFF, pixel >> 8 & 0xFF, pixel >> 16 & 0xFF);
        pixels[i] = scalePixel(opaque, pixel >> 24);
    }
}

std::uint32_t straightenPixel(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    const auto channel = [&](unsigned shift) {
        const std::uint32_t value = std::min(pixel >> shift & 0xFF, alpha);
        return (value * reciprocals[alpha] + (1U << 23)) >> 24;
    };
    return packPixel(alpha, channel(16), channel(8), channel(0));
}

void straightenPixels(const std::uint32_t* pixels, std::uint32_t* straight, std::size_t count) {
    // Most pixels are opaque: blocks without any others are only copied.
    constexpr std::size_t block = 64;
    for (std::size_t begin = 0; begin < count; begin += block) {
        const std::size_t end = std::min(begin + block, count);
        if (allOpaque(pixels + begin, end - begin))
            std::copy(pixels + begin, pixels + end, straight + begin);
        else
            std::transform(pixels + begin, pixels + end, straight + begin, straightenPixel);
    }
}

void writeRGBA(const std::uint32_t* pixels, std::uint8_t* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t* pixel = bytes + 4 * i;
        pixel[0] = static_cast<std::uint8_t>(pixels[i] >> 16);
        pixel[1] = static_cast<std::uint8_t>(pixels[i] >> 8);
        pixel[2] = static_cast<std::uint8_t>(pixels[i]);
        pixel[3] = static_cast<std::uint8_t>(pixels[i] >> 24);
    }
}

}  // namespace tavrin
