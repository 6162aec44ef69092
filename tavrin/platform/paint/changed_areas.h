// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/painter.h"

namespace tavrin::paint {

/// In what two laid-out trees differ when they are drawn.
struct ChangedAreas {
    /// A few areas that hold all pixels that may differ; none where nothing does.
    std::vector<PixelRect> areas = {};
    /// The first view that is drawn otherwise, or the one that holds it: the way to it in the later tree, and where the
    /// earlier one has it.
    DrawnWay first = {};
    layout::LayoutTree::Index firstBefore = 0;
    /// Where nothing differs that is drawn before a divider of the earlier tree: its way in the later one, and what
    /// it and all that follows may touch in either.
    DrawnWay divider = {};
    PixelRect fromDivider = {};
};

/// Compares two laid-out trees, given with their extents, that are drawn with the same look at `scale` pixels a point:
/// view by view, in the order in which they are drawn; of a view that is drawn otherwise, or not in both trees, all it
/// may have touched in either counts. `divider` is a view of the earlier one. Takes steps as comparing goes, fewer than
/// drawing.
[[nodiscard]] ChangedAreas changedAreas(DrawnExtents& before, DrawnExtents& after, double scale,
                                        std::optional<layout::LayoutTree::Index> divider = std::nullopt);

/// Unites areas that overlap, or nearly so, until few are left.
[[nodiscard]] std::vector<PixelRect> mergedAreas(std::vector<PixelRect> areas);

}  // namespace tavrin::paint
