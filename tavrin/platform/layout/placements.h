// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/proposal.h"

namespace tavrin::layout {

/// How a vertical or horizontal stack came to what it proposed to one child along its axis.
struct StackShare {
    std::size_t turn = 0;      ///< how many children of its group were dealt their shares before
    std::size_t count = 0;     ///< how many children its group has: those that yield, or the others
    std::size_t siblings = 0;  ///< how many children the stack has, this one among them
    bool yields = false;       ///< whether it is of those that yield
    double spacing = 0;        ///< between all children, in points
    double setAside = 0;       ///< for those that yield, in points
    /// What was left of the stack's room, in points, to be divided by the number of children of the group that had no
    /// share yet. May be negative: nothing is left then.
    double remainder = 0;
    /// By how much the child's length can vary, in points: the least flexible one has the first turn. Absent where the
    /// turns make no difference.
    std::optional<double> flexibility;
};

/// What led to the places in a laid-out tree, by the index of each node.
struct Placements {
    /// What each placed node was proposed last: its frame's size is the answer to that.
    pool::Vector<Proposal> proposals;
    /// The shares of the children of stacks that had room to share out.
    std::unordered_map<std::uint32_t, StackShare> shares;
};

}  // namespace tavrin::layout
