#pragma once

#include <vector>

#include "tavrin/dsl/view_origins.h"
#include "tavrin/platform/foundation/affine_transform.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin {

/// A text, picture or frame of a laid-out tree, and how it is drawn.
struct DrawnView {
    layout::LayoutTree::Index index = 0;
    /// The way to the node that drew it, or to the nearest one around it that is known; null where none is.
    const CodingPath* origin = nullptr;
    AffineTransform transform = {};
    /// What clips leave of the widget, in points.
    Rect clip = {};
    /// Of all that is around it.
    double opacity = 1;
};

/// The texts, web images and flexible frames of a tree, as far as they are drawn at all, in the order in which they
/// are drawn. `origins` may be null.
[[nodiscard]] std::vector<DrawnView> drawnViews(const layout::LayoutTree& tree, const ViewOrigins* origins);

/// What two rectangles have in common; without a size where that is nothing.
[[nodiscard]] Rect commonRect(const Rect& a, const Rect& b);

}  // namespace tavrin
