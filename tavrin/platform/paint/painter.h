// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/canvas.h"

namespace tavrin::paint {

class DrawnExtents;
class TextPainter;

/// How a tree is drawn.
struct PaintOptions {
    bool drawsTexts = true;
    /// Those of the tree, where it is drawn more than once; absent: those of this time.
    DrawnExtents* extents = nullptr;
};

/// Draws a laid-out tree on a canvas: one walk, whatever the canvas is. Throws nothing of its own; what cannot be drawn
/// is left out.
void paintTree(const layout::LayoutTree& tree, Canvas& canvas, TextPainter& texts, const PaintOptions& options = {});

/// Whether a subtree needs no layer to be faded: it draws one thing only, or what it draws is faded further in, by an
/// opacity of its own, which then counts both.
[[nodiscard]] bool isFadedAlike(const layout::LayoutTree& tree, layout::LayoutTree::Index index);

}  // namespace tavrin::paint
