// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/explain/placed_tree.h"

namespace tavrin::explain {

/// Why a stack without a spacing of its own puts a view that far from the one before it, in a few words:
/// "above a text of 17 points: 4.1 of descent and 2.33 of clearance". The node is not the stack's first.
[[nodiscard]] std::string reasonOfDistance(const PlacedTree& placed, PlacedTree::Index index, layout::Axis axis);

}  // namespace tavrin::explain
