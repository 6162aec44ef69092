// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/loaded_bodies.h"
#include "tavrin/platform/layout/measurer.h"

namespace tavrin::layout {

/// All of `layOut` but waiting for what the views wait for: unrolls a view into a tree that is still empty and gives
/// every view its size and place. Afterwards `measurer` remembers what was asked.
void unrollAndPlace(LayoutTree& tree, const AnyView& root, LoadedBodies& loaded, Measurer& measurer,
                    text::TextEngine& texts, const Diagnostics& diagnostics);

}  // namespace tavrin::layout
