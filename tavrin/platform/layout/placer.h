// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/measurer.h"

namespace tavrin::layout {

/// Gives the nodes of a tree their places, with the same proposals by which they were measured.
class Placer {
public:
    using Index = LayoutTree::Index;

    /// `earlier` must outlive it.
    Placer(LayoutTree& tree, Measurer& measurer, const EarlierLayout& earlier)
        : tree_(tree), measurer_(measurer), earlier_(earlier) {}

    /// From now on notes what each node is placed with.
    void keepProposals(pool::Vector<Proposal>& proposals) {
        proposals.resize(tree_.nodes().size());
        proposals_ = &proposals;
    }

    /// Proposes the widget's size to the root and centres it.
    void placeRoot();

    /// The geometry readers that have got their places, in this order.
    [[nodiscard]] const pool::Vector<Index>& placedReaders() const { return placedReaders_; }
    /// Places the content that was made for a reader.
    void placeContent(Index reader);

private:
    void place(Index index, Proposal proposal, Rect frame);
    void placeAsBefore(Index index);
    void placeText(Index text, const Proposal& proposal);
    void placeLayers(Index zstack, const Rect& frame);
    void placeRow(Index stack, const Proposal& proposal, const Rect& frame);
    void placeSecondary(Index modifier, const Rect& frame);
    void note(Index index, const Proposal& proposal);
    void noteShares(Index stack, const std::optional<double>& room, std::size_t first);
    void placeAligned(Index child, const Proposal& proposal, const Rect& room, Alignment alignment);

    LayoutTree& tree_;
    Measurer& measurer_;
    const EarlierLayout& earlier_;
    pool::Vector<Proposal>* proposals_ = nullptr;
    pool::Vector<Index> placedReaders_;
};

}  // namespace tavrin::layout
