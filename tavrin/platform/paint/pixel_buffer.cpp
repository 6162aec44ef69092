// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/pixel_buffer.h"

#include <algorithm>

#include <fmt/format.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/memory/fresh_memory.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin::paint {

PixelBuffer::PixelBuffer(std::int64_t width, std::int64_t height) : PixelBuffer(unset(width, height)) { clear(); }

PixelBuffer PixelBuffer::unset(std::int64_t width, std::int64_t height) {
    const auto fits = [](std::int64_t side) { return side >= 1 && side <= maxSide; };
    if (!fits(width) || !fits(height))
        throw TavrinError{"Render", fmt::format("a picture of {} x {} pixels: each side must be 1 to {} pixels", width,
                                                height, maxSide)};
    if (width * height > maxPixels)
        throw TavrinError{"Render", fmt::format("a picture of {} x {} pixels: there may be at most {} pixels", width,
                                                height, maxPixels)};
    PixelBuffer buffer;
    buffer.width_ = static_cast<int>(width);
    buffer.height_ = static_cast<int>(height);
    const auto count = static_cast<std::size_t>(width * height);
    const HeldBytes mayBeHeld(count * sizeof(std::uint32_t));
    buffer.pixels_.resize(count);
    takeAtOnce(buffer.pixels_.data(), buffer.byteCount());
    return buffer;
}

void PixelBuffer::clear() { std::fill(pixels_.begin(), pixels_.end(), 0U); }

bool PixelBuffer::isOpaque() const {
    for (int y = 0; y < height_; ++y)
        if (!allOpaque(row(y), static_cast<std::size_t>(width_))) return false;
    return true;
}

std::vector<std::uint8_t> PixelBuffer::straightRGBA() const {
    std::vector<std::uint32_t> pixels(pixels_.size());
    straightenPixels(pixels_.data(), pixels.data(), pixels.size());
    std::vector<std::uint8_t> bytes(4 * pixels.size());
    writeRGBA(pixels.data(), bytes.data(), pixels.size());
    return bytes;
}

}  // namespace tavrin::paint
