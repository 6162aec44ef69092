// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/painter.h"
#include "tavrin/platform/paint/render_options.h"

namespace tavrin::paint {

/// Draws a laid-out widget with what lies behind it, cut as the options say; see `paintTree`.
void paintWidget(const layout::LayoutTree& tree, const RenderOptions& options, Canvas& canvas, TextPainter& texts,
                 const PaintOptions& what = {});

}  // namespace tavrin::paint
