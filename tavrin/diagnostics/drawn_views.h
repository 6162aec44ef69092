// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <string>

#include "tavrin/diagnostics/written_document.h"
#include "tavrin/dsl/view_origins.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/drawing_walk.h"

namespace tavrin {

/// A text, picture, frame or link of a laid-out tree, and how it is drawn.
struct DrawnView : layout::DrawnPlace {
    /// The way to the node that drew it, or to the nearest one around it that is known; null where none is.
    const CodingPath* origin = nullptr;
    /// Whether what is out of sight here may be meant to be: another moment or model, or another place inside a clip,
    /// shows it.
    bool mayAppear = false;
};

/// The ways to a document's effects (offset, scale, rotation) that a model may change.
using BoundEffects = std::set<std::string, std::less<>>;
[[nodiscard]] BoundEffects boundEffects(const WrittenDocument& document);

/// The texts, web images, flexible frames and links of a tree, as far as they are drawn at all, in the order in which
/// they are drawn. `origins` may be null.
[[nodiscard]] pool::Vector<DrawnView> drawnViews(const layout::LayoutTree& tree, const ViewOrigins* origins,
                                                 const BoundEffects& bound);

}  // namespace tavrin
