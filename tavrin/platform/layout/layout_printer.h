// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin::layout {

/// The view tree as `viewTreeText` writes it, with `"frame": [x, y, width, height]` for every view and modified view:
/// points from the widget's top leading corner, null where there is no view.
std::string layoutTreeText(const LayoutTree& tree);
void writeLayoutTree(const LayoutTree& tree, const TextSink& sink);

/// The same; `shown` becomes the views of the text's objects with a frame, in the order in which these begin. Null for
/// a part that is not in the tree.
std::string tracedLayoutText(const LayoutTree& tree, std::vector<const AnyView*>& shown);

}  // namespace tavrin::layout
