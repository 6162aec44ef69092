// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/pixels/bitmap.h"

namespace tavrin {

/// Makes pictures small enough for a size, their ratio of width to height kept.
class ImageProcesser {
public:
    /// `maxSize` is in pixels; infinite sides bound nothing.
    explicit ImageProcesser(Size maxSize) : maxSize(maxSize) {}

    /// The picture, scaled down when it is larger than `maxSize`. A side that would not be a whole number of pixels is
    /// rounded up. When `maxSize` is not positive the picture stays as it is. Null stays null. The last results are
    /// kept: the same picture gives the same result at once. What is not the picture itself counts as held from then
    /// on. Any thread.
    [[nodiscard]] std::shared_ptr<const Bitmap> fit(const std::shared_ptr<const Bitmap>& image) const;

    Size maxSize;
};

}  // namespace tavrin
