// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

/// What makes the next frame of the one before.
struct FramePatch {
    PixelRect area;
    PixelBuffer pixels;
    /// Whether it is drawn over the frame before, which shows through where nothing changed; otherwise it replaces the
    /// area.
    bool isBlended = false;
};

/// The smallest area outside which two pictures of one size are the same; empty when they are the same throughout.
[[nodiscard]] PixelRect changedArea(const PixelBuffer& before, const PixelBuffer& now);

/// A picture as the first frame.
[[nodiscard]] FramePatch wholePatch(const PixelBuffer& picture);

/// The patch of an area that holds all that changed. Pixels that did not change are left out where no other pixel needs
/// to be translucent: large empty areas take next to no bytes.
[[nodiscard]] FramePatch patchOf(const PixelBuffer& before, const PixelBuffer& now, const PixelRect& area);

}  // namespace tavrin::paint
