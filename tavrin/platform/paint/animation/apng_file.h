// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "tavrin/platform/paint/animation/encoded_frame.h"
#include "tavrin/platform/paint/animation/frame_patch.h"
#include "tavrin/platform/paint/png_encoder.h"

namespace tavrin::paint {

/// A patch as the data of a frame: RGBA rows, compressed.
[[nodiscard]] std::string apngFrame(const FramePatch& patch, PngCompression compression);

/// An animated PNG that plays without end. The first frame covers the whole picture; viewers that know no animation
/// show it alone. A frame is shown for 18 hours at most.
[[nodiscard]] std::string apngFile(int width, int height, std::span<const EncodedFrame> frames);

}  // namespace tavrin::paint
