// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/painter.h"
#include "tavrin/platform/paint/widget_look.h"

namespace tavrin::paint {

/// Draws a laid-out widget with what lies behind it, cut as its look says; see `paintTree`.
void paintWidget(const layout::LayoutTree& tree, const WidgetLook& look, Canvas& canvas, TextPainter& texts,
                 const PaintOptions& what = {});

}  // namespace tavrin::paint
