// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin::paint {

class TextPainter;

/// The next moment at which a laid-out tree is drawn otherwise than at that of its environment, infinitely far away
/// where the time changes nothing. Exact for timers; a clock's hand turns all the time, so what shows one that turns,
/// or a body that may read the date, changes at once: at the tree's own moment. What cannot be seen counts for nothing.
/// `texts` draws the tree's texts.
[[nodiscard]] Date nextChange(const layout::LayoutTree& tree, TextPainter& texts);

}  // namespace tavrin::paint
