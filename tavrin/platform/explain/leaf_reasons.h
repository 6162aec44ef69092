// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/explain/reasons.h"

namespace tavrin::explain {

/// Why a present node that holds no other answered what it did.
[[nodiscard]] Reason reasonOfLeaf(const PlacedTree& placed, PlacedTree::Index index);

}  // namespace tavrin::explain
