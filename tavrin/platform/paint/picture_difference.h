// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// In what two pictures differ.
struct PictureDifference {
    /// Whether they have the same size; else every pixel outside what both have counts as different.
    bool sameSize = true;
    /// How many pixels differ by more than the tolerance.
    std::int64_t count = 0;
    /// The smallest rectangle around those.
    PixelRect bounds = {};
    /// The greatest difference of a channel of a pixel that both have, 0…255; also below the tolerance.
    int greatest = 0;

    [[nodiscard]] bool none() const { return sameSize && count == 0; }
};

/// Compares two pictures pixel by pixel, aligned at their top leading corners. Pixels differ when a channel (alpha, or
/// a colour multiplied by it) differs by more than `tolerance`, 0…255.
[[nodiscard]] PictureDifference compare(const PixelBuffer& before, const PixelBuffer& after, int tolerance = 0);

/// Both pictures and what differs, side by side on gray: the third one is the second, faded, with each pixel that
/// differs in red. Throws `TavrinError` of kind "Render" where that is larger than a picture may be.
[[nodiscard]] PixelBuffer differencePicture(const PixelBuffer& before, const PixelBuffer& after, int tolerance = 0);

}  // namespace tavrin::paint
