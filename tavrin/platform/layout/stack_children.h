// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::layout {

[[nodiscard]] constexpr bool isStack(ViewKind kind) { return traitsOf(kind).isStack(); }

/// Along which axis a vertical or horizontal stack lays its children.
[[nodiscard]] constexpr Axis mainAxis(ViewKind stack) {
    return stack == ViewKind::vstack ? Axis::vertical : Axis::horizontal;
}

/// Finds out what stacks have to know of their children before any size: which are views, which yield, how far their
/// edges stay apart, and in which order they are drawn.
class StackChildren {
public:
    using Index = LayoutTree::Index;

    explicit StackChildren(LayoutTree& tree) : tree_(tree) {}

    /// For all nodes from `first` on, which know where they end and whether they are absent themselves.
    void prepare(Index first);

private:
    void spreadAbsence(Index first);
    void describe(Index index);
    void describeStack(Index stack);
    void describeContainer(Index modifier);
    void list(Index stack);
    void sortForDrawing(LayoutTree::ContainerItem& stack);
    [[nodiscard]] double zIndex(Index child) const;

    LayoutTree& tree_;
};

/// The spacing that a vertical or horizontal stack gives, if it does: a finite one.
[[nodiscard]] std::optional<double> givenSpacing(const AnyView& stack);

/// The room between two neighbours in a vertical or horizontal stack: as given, else the distance of their edges.
[[nodiscard]] double spacingBetween(const LayoutTree& tree, LayoutTree::Index stack, LayoutTree::Index before,
                                    LayoutTree::Index after);

}  // namespace tavrin::layout
