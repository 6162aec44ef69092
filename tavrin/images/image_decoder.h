// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "tavrin/platform/foundation/pixels/bitmap.h"

namespace tavrin {

/// How large a picture may be.
struct ImageBounds {
    /// A picture with a longer side is refused: no canvas is larger, and no row takes long.
    static constexpr std::size_t maximumSide = 32'767;
    /// A picture whose file declares more pixels is refused before anything is allocated for them.
    std::size_t maximumPixels = 64'000'000;
    /// A picture is refused while all bitmaps of the process, this one included, would take more, in bytes: documents
    /// may name any number of pictures.
    std::size_t maximumBytesInUse = std::size_t{1} << 30;
};

/// The picture that a file's bytes hold: PNG, JPEG, WebP or GIF (of an animation the first frame), told apart by
/// content. A JPEG is turned as its EXIF orientation says; colour profiles are not applied. Null when the bytes hold no
/// picture, a damaged or cut off one, or one beyond `bounds`. Any thread; as many pictures are decoded at once as there
/// are processors, others wait. Throws what the thread's budget says when that ends.
std::shared_ptr<const Bitmap> decodeImage(std::string_view bytes, const ImageBounds& bounds = {});

}  // namespace tavrin
