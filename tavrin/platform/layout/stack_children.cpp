// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/stack_children.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tavrin/platform/layout/modifier_rules.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::layout {
std::optional<double> givenSpacing(const AnyView& stack) {
    const VStack* vertical = stack.as<VStack>();
    const auto given = vertical ? vertical->spacing : stack.as<HStack>()->spacing;
    return given && std::isfinite(*given) ? given : std::nullopt;
}

double spacingBetween(const LayoutTree& tree, LayoutTree::Index stack, LayoutTree::Index before,
                      LayoutTree::Index after) {
    if (const auto given = givenSpacing(*tree.node(stack).view)) return *given;
    const Axis axis = mainAxis(tree.node(stack).kind);
    return distanceBetween(tree.edges(before).last(axis), tree.edges(after).first(axis));
}

void StackChildren::prepare(Index first) {
    spreadAbsence(first);
    const auto end = static_cast<Index>(tree_.nodes_.size());
    for (Index index = end; index-- > first;)  // what is inside is described first
        if (!tree_.nodes_[index].absent) describe(index);
    for (Index index = first; index < end; ++index)
        if (isStack(tree_.nodes_[index].kind) && !tree_.nodes_[index].absent) list(index);
}

/// What an absent modifier holds is not there either: the view behind nothing, say.
void StackChildren::spreadAbsence(Index first) {
    for (Index index = first; index < tree_.nodes_.size();) {
        if (!tree_.nodes_[index].absent) {
            ++index;
            continue;
        }
        for (const Index end = tree_.nodes_[index].end; index < end; ++index) tree_.nodes_[index].absent = true;
    }
}

/// Whether a node yields, and its edges.
void StackChildren::describe(Index index) {
    LayoutNode& node = tree_.nodes_[index];
    if (isStack(node.kind)) {
        describeStack(index);
    } else if (!tree_.children(index).empty()) {
        describeContainer(index);
    } else if (node.kind == ViewKind::spacer) {
        node.yields = true;
    } else if (node.kind != ViewKind::text) {  // a text knows its edges by its font
        node.edges = EdgeTable::plain;
    }
}

void StackChildren::describeStack(Index stack) {
    LayoutNode& node = tree_.nodes_[stack];
    std::optional<EdgeTable::Id> first;
    EdgeTable::Id last = EdgeTable::none;
    bool areAlike = true;
    ViewEdges edges;
    for (const Index child : tree_.children(stack)) {
        if (tree_.nodes_[child].absent) continue;
        const EdgeTable::Id id = tree_.nodes_[child].edges;
        if (!first || id != last) edges = unionOf(edges, tree_.edges_[id]);
        if (!first) first = id;
        areAlike = areAlike && id == *first;
        last = id;
    }
    node.yields = !first;
    node.edges = last;
    if (areAlike) return;
    if (node.kind == ViewKind::vstack) {
        edges.top = tree_.edges_[*first].top;
        edges.bottom = tree_.edges_[last].bottom;
    } else if (node.kind == ViewKind::hstack) {
        edges.leading = tree_.edges_[*first].leading;
        edges.trailing = tree_.edges_[last].trailing;
    }
    node.edges = tree_.edges_.idOf(edges);
}

void StackChildren::describeContainer(Index modifier) {
    LayoutNode& node = tree_.nodes_[modifier];
    const LayoutNode& content = tree_.nodes_[tree_.content(modifier)];
    node.yields = content.yields && traitsOf(node.kind).isTransparentToLayout;
    node.edges = content.edges;
    const bool isFrame = node.kind == ViewKind::fixedFrame || node.kind == ViewKind::flexibleFrame;
    if (isFrame && content.kind == ViewKind::spacer) return;
    const Edges moved = movedEdges(*node.view);
    if (moved != Edges{}) node.edges = tree_.edges_.idOf(withPlain(tree_.edges_[content.edges], moved));
}

void StackChildren::list(Index stack) {
    LayoutTree::ContainerItem& item = tree_.containers_[tree_.nodes_[stack].detail];
    const auto first = static_cast<Index>(tree_.childLists_.size());
    item.inDocumentOrder = item.inDrawingOrder = first;
    const bool spaced = tree_.nodes_[stack].kind != ViewKind::zstack;
    for (const Index child : tree_.children(stack)) {
        if (tree_.nodes_[child].absent) continue;
        if (spaced && tree_.childLists_.size() > first)
            item.totalSpacing += spacingBetween(tree_, stack, tree_.childLists_.back(), child);
        tree_.childLists_.push_back(child);
    }
    item.count = static_cast<Index>(tree_.childLists_.size()) - first;
    sortForDrawing(item);
}

/// Gives a stack a list of its own for drawing, unless its children are drawn in document order.
void StackChildren::sortForDrawing(LayoutTree::ContainerItem& stack) {
    std::vector<std::pair<double, Index>> byDepth;
    byDepth.reserve(stack.count);
    for (const Index child : std::span(tree_.childLists_).subspan(stack.inDocumentOrder, stack.count))
        byDepth.emplace_back(zIndex(child), child);
    if (std::is_sorted(byDepth.begin(), byDepth.end())) return;
    std::sort(byDepth.begin(), byDepth.end());
    stack.inDrawingOrder = static_cast<Index>(tree_.childLists_.size());
    for (const auto& [depth, child] : byDepth) tree_.childLists_.push_back(child);
}

/// The depth of a stack's child: that of the innermost `ZIndex` around it, 0 when there is none or it is not a number.
double StackChildren::zIndex(Index child) const {
    double depth = 0;
    while (!isStack(tree_.node(child).kind) && !tree_.children(child).empty()) {
        if (const auto* index = tree_.node(child).view->as<ZIndex>()) depth = index->value;
        child = tree_.content(child);
    }
    return std::isnan(depth) ? 0 : depth;
}

}  // namespace tavrin::layout
