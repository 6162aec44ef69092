// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin::layout {

/// The view tree as `viewTreeText` writes it, with `"frame": [x, y, width, height]` for every view and modified view:
/// points from the widget's top leading corner, null where there is no view.
std::string layoutTreeText(const LayoutTree& tree);
void writeLayoutTree(const LayoutTree& tree, const TextSink& sink);

}  // namespace tavrin::layout
