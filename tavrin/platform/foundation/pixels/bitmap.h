// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavrin {

/// A picture in memory: rows of 32-bit pixels from top to bottom, each a native 0xAARRGGBB word with premultiplied
/// channels, without gaps between rows. Immutable; shared between views, caches and threads as
/// `std::shared_ptr<const Bitmap>`.
class Bitmap {
public:
    /// Takes `pixels` over, `width` times `height` of them; both sides are at least 1.
    Bitmap(int width, int height, std::vector<std::uint32_t> pixels);
    ~Bitmap();
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;

    /// In pixels.
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    /// The pixels of row `y`, counted from 0 at the top.
    [[nodiscard]] const std::uint32_t* row(int y) const {
        return pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }
    /// Whether every pixel is fully opaque.
    [[nodiscard]] bool isOpaque() const { return opaque_; }
    /// What the pixels take in memory.
    [[nodiscard]] std::size_t byteCount() const { return pixels_.size() * sizeof(std::uint32_t); }
    /// What the pixels of all bitmaps of the process take.
    [[nodiscard]] static std::size_t bytesInUse();
    /// A number that no other bitmap of this process ever has, not even after this one is gone.
    [[nodiscard]] std::uint64_t identity() const { return identity_; }

private:
    int width_;
    int height_;
    bool opaque_;
    std::uint64_t identity_;
    std::vector<std::uint32_t> pixels_;
};

}  // namespace tavrin
