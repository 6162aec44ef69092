// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace tavrin::paint {

/// A picture in memory: rows of 32-bit pixels from top to bottom, each 0xAARRGGBB with premultiplied channels, without
/// gaps between rows. What it takes counts as held by who draws on it, not by whom it is handed to. A value like any
/// other; one thread at a time may change it.
class PixelBuffer {
public:
    static constexpr int maxSide = 32767;
    static constexpr std::int64_t maxPixels = 100'000'000;

    /// No pixels.
    PixelBuffer() = default;
    /// A transparent picture. Throws `TavrinError` of kind "Render", before anything is allocated, when a side is not
    /// in 1…`maxSide` or there would be more than `maxPixels`.
    PixelBuffer(std::int64_t width, std::int64_t height);
    /// The same with pixels of any value, for who writes all of them.
    [[nodiscard]] static PixelBuffer unset(std::int64_t width, std::int64_t height);
    /// Makes it transparent.
    void clear();

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] std::size_t byteCount() const { return pixels_.size() * sizeof(std::uint32_t); }

    [[nodiscard]] std::uint32_t* row(int y) { return pixels_.data() + offset(y); }
    [[nodiscard]] const std::uint32_t* row(int y) const { return pixels_.data() + offset(y); }

    /// Whether every pixel is fully opaque.
    [[nodiscard]] bool isOpaque() const;

    /// The picture as bytes R, G, B, A for each pixel, channels not premultiplied.
    [[nodiscard]] std::vector<std::uint8_t> straightRGBA() const;

    friend bool operator==(const PixelBuffer&, const PixelBuffer&) = default;

private:
    /// Leaves numbers unset that a vector would set to 0.
    template <class Number>
    struct Unset : std::allocator<Number> {
        void construct(Number* place) const noexcept { ::new (static_cast<void*>(place)) Number; }
        template <class... Arguments>
        void construct(Number* place, Arguments... arguments) const noexcept {
            ::new (static_cast<void*>(place)) Number(arguments...);
        }
    };

    [[nodiscard]] std::size_t offset(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }

    int width_ = 0;
    int height_ = 0;
    std::vector<std::uint32_t, Unset<std::uint32_t>> pixels_;
};

}  // namespace tavrin::paint
