// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/explain/placed_tree.h"

// Why a present node of a placed tree was proposed what it was, answered what it did and lies where it lies.

namespace tavrin::explain {

/// A reason in a few words, for a line of an outline, and in a sentence or more. The words may be empty.
struct Reason {
    std::string brief = {};
    std::string sentence = {};
};

[[nodiscard]] Reason reasonOfProposal(const PlacedTree& placed, PlacedTree::Index index);
[[nodiscard]] Reason reasonOfAnswer(const PlacedTree& placed, PlacedTree::Index index);
[[nodiscard]] Reason reasonOfPlace(const PlacedTree& placed, PlacedTree::Index index);

/// Why a present node that holds no other answered what it did.
[[nodiscard]] Reason reasonOfLeaf(const PlacedTree& placed, PlacedTree::Index index);

/// Why a stack without a spacing of its own puts a view that far from the one before it, in a few words:
/// "above a text of 17 points: 4.1 of descent and 2.33 of clearance". The node is not the stack's first.
[[nodiscard]] std::string reasonOfDistance(const PlacedTree& placed, PlacedTree::Index index, layout::Axis axis);

}  // namespace tavrin::explain
