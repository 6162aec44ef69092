// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin::paint {

class TextPainter;

/// Where what the views of a tree draw may lie. Never less than they draw, up to the rounding to whole pixels; infinite
/// where that is not known. Each view is looked at once, when it is asked for.
class DrawnExtents {
public:
    using Index = layout::LayoutTree::Index;

    /// `texts` draws the tree's texts.
    DrawnExtents(const layout::LayoutTree& tree, TextPainter& texts);
    DrawnExtents(const DrawnExtents&) = delete;
    DrawnExtents& operator=(const DrawnExtents&) = delete;
    ~DrawnExtents();

    [[nodiscard]] const layout::LayoutTree& tree() const { return tree_; }
    /// Of a view with all it holds, in the points of its frame.
    [[nodiscard]] Rect of(Index index);

    /// The memory they take.
    [[nodiscard]] std::size_t byteCount() const;

private:
    /// Edges, so that two can be united: of nothing, the first lie beyond the others.
    struct Extent;

    [[nodiscard]] const Extent& extentOf(Index index);
    [[nodiscard]] Extent made(Index index);
    [[nodiscard]] Extent ofText(Index index) const;

    const layout::LayoutTree& tree_;
    TextPainter& texts_;
    pool::Vector<Extent> known_;
};

}  // namespace tavrin::paint
