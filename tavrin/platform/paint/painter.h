// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/canvas.h"

namespace tavrin::paint {

class DrawnExtents;
class TextPainter;

/// The way from the root to a view, which divides a drawing in what is drawn before it, and it with what follows.
using DrawnWay = std::vector<layout::LayoutTree::Index>;

/// How a tree is drawn.
struct PaintOptions {
    bool drawsTexts = true;
    /// Those of the tree, where it is drawn more than once; absent: those of this time.
    DrawnExtents* extents = nullptr;
    /// Where the drawing is divided; none of the views around that one clips, composes or draws anything itself.
    DrawnWay divider = {};
    /// Whether what comes before the divider is there already.
    bool startsAtDivider = false;
    /// Called when the divider is reached.
    std::function<void()> atDivider = {};
};

/// Draws a laid-out tree on a canvas: one walk, whatever the canvas is. Throws nothing of its own; what cannot be drawn
/// is left out.
void paintTree(const layout::LayoutTree& tree, Canvas& canvas, TextPainter& texts, const PaintOptions& options = {});

/// Whether a subtree needs no layer to be faded: it draws one thing only, or what it draws is faded further in, by an
/// opacity of its own, which then counts both.
[[nodiscard]] bool isFadedAlike(const layout::LayoutTree& tree, layout::LayoutTree::Index index);

}  // namespace tavrin::paint
