// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

// Arithmetic on 0xAARRGGBB pixels with premultiplied channels.

namespace tavrin {

constexpr std::uint32_t packPixel(std::uint32_t alpha, std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

/// Every channel times `share` / 255, rounded. `share` is at most 255.
constexpr std::uint32_t scalePixel(std::uint32_t pixel, std::uint32_t share) {
    constexpr std::uint32_t mask = 0x00FF00FF;
    constexpr std::uint32_t half = 0x00800080;
    std::uint32_t redBlue = (pixel & mask) * share + half;
    std::uint32_t alphaGreen = (pixel >> 8 & mask) * share + half;
    redBlue = (redBlue + (redBlue >> 8 & mask)) >> 8 & mask;
    alphaGreen = (alphaGreen + (alphaGreen >> 8 & mask)) & ~mask;
    return redBlue | alphaGreen;
}

/// `source` drawn over `target`.
constexpr std::uint32_t over(std::uint32_t source, std::uint32_t target) {
    return source + scalePixel(target, 255 - (source >> 24));
}

/// `a` where `share` is 255, `b` where it is 0, a mixture between.
constexpr std::uint32_t mixPixels(std::uint32_t a, std::uint32_t b, std::uint32_t share) {
    constexpr std::uint32_t mask = 0x00FF00FF;
    constexpr std::uint32_t half = 0x00800080;
    std::uint32_t redBlue = (a & mask) * share + (b & mask) * (255 - share) + half;
    std::uint32_t alphaGreen = (a >> 8 & mask) * share + (b >> 8 & mask) * (255 - share) + half;
    redBlue = (redBlue + (redBlue >> 8 & mask)) >> 8 & mask;
    alphaGreen = (alphaGreen + (alphaGreen >> 8 & mask)) & ~mask;
    return redBlue | alphaGreen;
}

/// Whether all of `count` pixels are fully opaque.
[[nodiscard]] bool allOpaque(const std::uint32_t* pixels, std::size_t count);

/// Reads `count` pixels from bytes R, G, B, A, channels not premultiplied; they may be the pixels' own memory.
void premultiplyPixels(const std::uint8_t* bytes, std::uint32_t* pixels, std::size_t count);

/// The channels of a pixel divided by its opacity, rounded.
[[nodiscard]] std::uint32_t straightenPixel(std::uint32_t pixel);
void straightenPixels(const std::uint32_t* pixels, std::uint32_t* straight, std::size_t count);

/// Writes `count` pixels as bytes R, G, B, A, channels as they are.
void writeRGBA(const std::uint32_t* pixels, std::uint8_t* bytes, std::size_t count);

}  // namespace tavrin
