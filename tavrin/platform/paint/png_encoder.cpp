// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_encoder.h"

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/png_balanced.h"
#include "tavrin/platform/paint/png_fast.h"
#include "tavrin/platform/paint/png_small.h"

namespace tavrin::paint {

std::string encodePng(const PixelBuffer& picture, PngCompression compression) {
    if (picture.width() == 0) throw TavrinError{"Render", "a picture without pixels cannot be a PNG"};
    switch (compression) {
        case PngCompression::fast: return encodePngFast(picture);
        case PngCompression::balanced: return encodePngBalanced(picture);
        case PngCompression::small: return encodePngSmall(picture);
    }
    return {};
}

}  // namespace tavrin::paint
