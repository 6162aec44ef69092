#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "tavrin/platform/layout/proposal.h"

namespace tavrin::layout {

/// How a vertical or horizontal stack came to what it proposed to one child along its axis.
struct StackShare {
    std::size_t turn = 0;   ///< how many children were dealt their shares before
    std::size_t count = 0;  ///< how many children there are
    /// What was left of the stack's room, in points, to be divided by the number of children that had no share yet.
    double remainder = 0;
    /// By how much the child's length can vary, in points: the least flexible one has the first turn. Absent where the
    /// turns make no difference.
    std::optional<double> flexibility;
};

/// What led to the places in a laid-out tree, by the index of each node.
struct Placements {
    /// What each placed node was proposed last: its frame's size is the answer to that.
    std::vector<Proposal> proposals;
    /// The shares of the children of stacks that had room to share out.
    std::unordered_map<std::uint32_t, StackShare> shares;
};

}  // namespace tavrin::layout
