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

}  // namespace tavrin::explain
