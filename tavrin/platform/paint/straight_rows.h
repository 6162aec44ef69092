// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// Rows with channels that are not premultiplied: the picture's own where all of a row is opaque.
class StraightRows {
public:
    explicit StraightRows(const PixelBuffer& picture) : picture_(picture), opaque_(picture.isOpaque()) {}

    /// Whether every pixel of the picture is fully opaque.
    [[nodiscard]] bool areOpaque() const { return opaque_; }
    [[nodiscard]] std::size_t width() const { return static_cast<std::size_t>(picture_.width()); }
    [[nodiscard]] int height() const { return picture_.height(); }

    /// Valid until the second call after this one.
    const std::uint32_t* row(int y) {
        const std::uint32_t* row = picture_.row(y);
        if (opaque_ || allOpaque(row, width())) return row;
        std::vector<std::uint32_t>& straight = made_[static_cast<std::size_t>(y) % made_.size()];
        straight.resize(width());
        straightenPixels(row, straight.data(), width());
        return straight.data();
    }

private:
    const PixelBuffer& picture_;
    bool opaque_;
    std::array<std::vector<std::uint32_t>, 2> made_;
};

}  // namespace tavrin::paint
