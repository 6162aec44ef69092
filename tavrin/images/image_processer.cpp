#include "tavrin/images/image_processer.h"

#include <algorithm>
#include <cmath>

#include "tavrin/images/fitted_size.h"
#include "tavrin/platform/foundation/scaled_bitmaps.h"

namespace tavrin {
namespace {

/// A side in whole pixels. Divisions leave whole numbers a little off.
int wholePixels(double side) { return static_cast<int>(std::ceil(side - 1e-6)); }

}  // namespace

std::shared_ptr<const Bitmap> ImageProcesser::fit(const std::shared_ptr<const Bitmap>& image) const {
    if (!image) return nullptr;
    const Size fitted = images::fittedSize(image->sourceSize(), maxSize);
    if (!(fitted.width > 0 && fitted.height > 0)) return image;
    return ScaledBitmaps::shared().scaled(image, std::max(1, wholePixels(fitted.width)),
                                          std::max(1, wholePixels(fitted.height)));
}

}  // namespace tavrin
