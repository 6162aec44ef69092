// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tavrin/platform/foundation/pixels/rgba.h"

namespace tavrin::paint {

/// A colour at a place of 0…1 along a gradient.
struct GradientStop {
    double place = 0;
    RGBA color;
};

/// As many stops as are needed so that colours interpolated between them channel by channel, in sRGB and not
/// premultiplied, are everywhere within `tolerance` (of 1) of those of the gradient, premultiplied. `colors` are two or
/// more, clamped, and evenly spaced. There are never many more than a thousand stops: of more colours than that only
/// so many count, and the more there are, the fewer stops lie between them.
///
/// In ascending order from 0 to 1; two at one place where the colour changes while it cannot be seen.
[[nodiscard]] std::vector<GradientStop> gradientStops(const std::vector<RGBA>& colors, double tolerance);

}  // namespace tavrin::paint
