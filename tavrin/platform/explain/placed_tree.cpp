// SPDX-License-Identifier: MIT
#include "tavrin/platform/explain/placed_tree.h"

#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/platform/layout/stack_children.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::explain {
namespace {

const layout::Placements& placementsOf(const layout::LayoutTree& tree) {
    if (!tree.placements()) preconditionFailure("a tree that is explained must be laid out with its placements noted");
    return *tree.placements();
}

}  // namespace

PlacedTree::PlacedTree(const layout::LayoutTree& tree, const OriginOf& originOf)
    : tree_(tree),
      held_(tree.nodes().size() * (sizeof(Index) + sizeof(Sibling) + sizeof(const CodingPath*))),
      placements_(placementsOf(tree)),
      parents_(tree.nodes().size(), none),
      siblings_(tree.nodes().size()) {
    Meter::ofThisThread().step(tree.nodes().size());
    findParents(0, none);
    for (Index index = 0; index < tree.nodes().size(); ++index)
        if (node(index).kind == ViewKind::geometryReader && tree.content(index) != 0)
            findParents(tree.content(index), index);
    origins_.reserve(tree.nodes().size());
    for (const layout::LayoutNode& node : tree.nodes()) origins_.push_back(originOf ? originOf(*node.view) : nullptr);
}

/// Notes the parents in a pre-order of its own; its root's is `outer`.
void PlacedTree::findParents(Index first, Index outer) {
    parents_[first] = outer;
    for (Index index = first; index < node(first).end; ++index) noteChildren(index);
}

void PlacedTree::noteChildren(Index index) {
    Sibling next;
    for (const Index child : tree_.children(index)) {
        parents_[child] = index;
        if (node(child).absent) continue;
        siblings_[child] = next;
        next = {next.rank + 1, child};
    }
}

std::optional<PlacedTree::Index> PlacedTree::parent(Index index) const {
    return parents_[index] == none ? std::nullopt : std::optional(parents_[index]);
}

const layout::StackShare* PlacedTree::share(Index index) const {
    const auto found = placements_.shares.find(index);
    return found == placements_.shares.end() ? nullptr : &found->second;
}

std::vector<PlacedTree::Index> PlacedTree::presentChildren(Index index) const {
    std::vector<Index> present;
    for (const Index child : tree_.children(index))
        if (!node(child).absent) present.push_back(child);
    return present;
}

double PlacedTree::spacingBefore(Index index) const {
    return layout::spacingBetween(tree_, parents_[index], siblings_[index].previous, index);
}

bool PlacedTree::isSecondary(Index index) const {
    const std::optional<Index> outer = parent(index);
    if (!outer) return false;
    return traitsOf(node(*outer).kind).holdsSecond() && tree_.secondary(*outer) == index;
}

std::string PlacedTree::called(Index index) const {
    std::string text = "the " + std::string(view(index).box().name());
    if (const CodingPath* path = origin(index)) text += " at " + toText(*path);
    return text;
}

}  // namespace tavrin::explain
