// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"

namespace tavrin::paint {

/// One frame of an animation, compressed as its file's format has it.
struct EncodedFrame {
    PixelRect area;
    /// Whether it is drawn over the frame before; otherwise it replaces the area.
    bool isBlended = false;
    /// How long it is shown.
    std::uint64_t milliseconds = 0;
    std::string bytes = {};
};

}  // namespace tavrin::paint
