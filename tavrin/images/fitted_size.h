#pragma once

#include "tavrin/platform/foundation/geometry.h"

namespace tavrin::images {

/// A picture's size made small enough for `maximum`, the ratio of its sides kept; a side may be a fraction of a pixel.
/// Not larger than the picture; empty or negative where `maximum` is.
inline Size fittedSize(Size picture, Size maximum) {
    const double ratio = picture.width / picture.height;
    Size fitted = picture;
    if (maximum.width < fitted.width) fitted = {maximum.width, maximum.width / ratio};
    if (maximum.height < fitted.height) fitted = {ratio * maximum.height, maximum.height};
    return fitted;
}

}  // namespace tavrin::images
