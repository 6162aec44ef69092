// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/paint/canvas.h"

namespace tavrin::paint {

/// What `draw` draws on a raster canvas.
template <class Draw>
PixelBuffer drawn(Size size, double scale, Draw draw) {
    Canvas canvas = Canvas::raster(size, scale);
    draw(canvas);
    return canvas.finishRaster();
}

}  // namespace tavrin::paint
