#pragma once

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::paint {

/// Draws a laid-out tree on a canvas: one walk, whatever the canvas is. Throws nothing of its own; what cannot be drawn
/// is left out. Without `drawsTexts` all but the texts is drawn.
void paintTree(const layout::LayoutTree& tree, Canvas& canvas, text::TextEngine& texts, bool drawsTexts = true);

}  // namespace tavrin::paint
