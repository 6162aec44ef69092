// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "tavrin/platform/paint/animation/encoded_frame.h"
#include "tavrin/platform/paint/animation/frame_patch.h"
#include "tavrin/platform/paint/png_encoder.h"

namespace tavrin::paint {

/// A patch as the picture of a frame, without loss.
[[nodiscard]] std::string webpFrame(const FramePatch& patch, PngCompression compression);

/// An animated WebP that plays without end. The areas begin at even pixels. A frame is shown for 4 hours and 39 minutes
/// at most.
[[nodiscard]] std::string webpFile(int width, int height, std::span<const EncodedFrame> frames);

}  // namespace tavrin::paint
