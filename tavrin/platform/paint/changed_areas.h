// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"

namespace tavrin::paint {

class DrawnExtents;

/// The pixels in which two laid-out trees, given with their extents, may differ when they are drawn with the same look
/// at `scale` pixels a point: a few areas that hold them all, none where nothing differs. Views are compared in the
/// order in which they are drawn; of a view that is drawn otherwise, or not in both trees, all it may have touched in
/// either counts. Takes steps as comparing goes, fewer than drawing.
[[nodiscard]] std::vector<PixelRect> changedAreas(DrawnExtents& before, DrawnExtents& after, double scale);

/// Unites areas that overlap, or nearly so, until few are left.
[[nodiscard]] std::vector<PixelRect> mergedAreas(std::vector<PixelRect> areas);

}  // namespace tavrin::paint
