// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/coding_path.h"
#include "tavrin/platform/layout/layout_tree.h"

namespace tavrin::explain {

/// Where in its document a view comes from; null where it is not known.
using OriginOf = std::function<const CodingPath*(const AnyView& view)>;

/// A laid-out tree, asked the way that explanations ask: who holds whom, and who proposed what.
class PlacedTree {
public:
    using Index = layout::LayoutTree::Index;

    /// The tree must have been laid out with `Recording::placements`.
    PlacedTree(const layout::LayoutTree& tree, const OriginOf& originOf);

    [[nodiscard]] const layout::LayoutTree& tree() const { return tree_; }
    [[nodiscard]] const layout::LayoutNode& node(Index index) const { return tree_.node(index); }
    [[nodiscard]] const AnyView& view(Index index) const { return *node(index).view; }
    /// The node that proposed a size to this one: also the reader of a content; none for the root.
    [[nodiscard]] std::optional<Index> parent(Index index) const;
    [[nodiscard]] const layout::Proposal& proposal(Index index) const { return placements_.proposals[index]; }
    [[nodiscard]] Size answer(Index index) const { return node(index).frame.size; }
    /// The share that a stack dealt the node; null where none was.
    [[nodiscard]] const layout::StackShare* share(Index index) const;
    /// The children of a node that are views, in document order.
    [[nodiscard]] std::vector<Index> presentChildren(Index index) const;
    /// How many views stand before the node in its stack.
    [[nodiscard]] std::size_t rank(Index index) const { return siblings_[index].rank; }
    /// The room between the node and the view before it in its vertical or horizontal stack; the node is not the first.
    [[nodiscard]] double spacingBefore(Index index) const;
    /// The view before the node in its stack; the node is not the first.
    [[nodiscard]] Index previous(Index index) const { return siblings_[index].previous; }
    /// Whether the node is the view behind or in front of its parent's content.
    [[nodiscard]] bool isSecondary(Index index) const;

    [[nodiscard]] const CodingPath* origin(Index index) const { return origins_[index]; }
    /// "the HStack at nodes.main".
    [[nodiscard]] std::string called(Index index) const;

private:
    static constexpr Index none = UINT32_MAX;

    /// A child that is a view among the others of its parent.
    struct Sibling {
        std::size_t rank = 0;
        Index previous = none;
    };

    void findParents(Index first, Index outer);
    void noteChildren(Index index);

    const layout::LayoutTree& tree_;
    HeldBytes held_;  // of the lists, one entry for each node
    const layout::Placements& placements_;
    std::vector<Index> parents_;
    std::vector<Sibling> siblings_;
    std::vector<const CodingPath*> origins_;
};

}  // namespace tavrin::explain
