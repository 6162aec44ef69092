// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::paint {

class TextPainter;

/// What a raster shows before anything is drawn that goes with the time: the same for every moment of one layout.
struct StillPart {
    /// Absent before the first drawing, and where nothing goes with the time.
    std::optional<PixelBuffer> pixels = std::nullopt;
};

/// What of a tree is drawn.
struct PaintOptions {
    bool drawsTexts = true;
    /// Of the same layout and on a raster, what it has is copied instead of drawn; the first drawing puts it there.
    StillPart* still = nullptr;
};

/// Draws a laid-out tree on a canvas: one walk, whatever the canvas is. Throws nothing of its own; what cannot be drawn
/// is left out.
void paintTree(const layout::LayoutTree& tree, Canvas& canvas, TextPainter& texts, const PaintOptions& options = {});

}  // namespace tavrin::paint
