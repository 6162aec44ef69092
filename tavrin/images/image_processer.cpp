// SPDX-License-Identifier: MIT
#include "tavrin/images/image_processer.h"

#include <algorithm>
#include <cmath>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/pixels/scaled_bitmaps.h"

namespace tavrin {
namespace {

/// A picture's size made small enough for `maximum`, the ratio of its sides kept; a side may be a fraction of a pixel.
/// Not larger than the picture; empty or negative where `maximum` is.
Size fittedSize(Size picture, Size maximum) {
    const double ratio = picture.width / picture.height;
    Size fitted = picture;
    if (maximum.width < fitted.width) fitted = {maximum.width, maximum.width / ratio};
    if (maximum.height < fitted.height) fitted = {ratio * maximum.height, maximum.height};
    return fitted;
}

/// A side in whole pixels. Divisions leave whole numbers a little off.
int wholePixels(double side) { return static_cast<int>(std::ceil(side - 1e-6)); }

}  // namespace

std::shared_ptr<const Bitmap> ImageProcesser::fit(const std::shared_ptr<const Bitmap>& image) const {
    if (!image) return nullptr;
    const Size size{static_cast<double>(image->width()), static_cast<double>(image->height())};
    const Size fitted = fittedSize(size, maxSize);
    if (!(fitted.width > 0 && fitted.height > 0)) return image;
    std::shared_ptr<const Bitmap> scaled = ScaledBitmaps::shared().scaled(image, std::max(1, wholePixels(fitted.width)),
                                                                          std::max(1, wholePixels(fitted.height)));
    if (scaled != image) Meter::ofThisThread().hold(scaled->byteCount());
    return scaled;
}

}  // namespace tavrin
