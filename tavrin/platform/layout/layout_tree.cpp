#include "tavrin/platform/layout/layout_tree.h"

#include <cmath>

#include "tavrin/platform/layout/measurer.h"
#include "tavrin/platform/layout/placer.h"
#include "tavrin/platform/layout/tree_builder.h"

namespace tavrin::layout {
namespace {

double sane(double length) { return std::isfinite(length) && length > 0 ? length : 0; }

}  // namespace

LayoutTree::Index LayoutTree::content(Index modifier) const {
    const ViewKind kind = nodes_[modifier].kind;
    const bool isSecond = kind == ViewKind::background || kind == ViewKind::overlay;
    return isSecond ? nodes_[modifier + 1].end : modifier + 1;
}

LayoutTree::Index LayoutTree::secondary(Index modifier) const { return modifier + 1; }

std::span<const LayoutTree::Index> LayoutTree::presentChildren(Index stack) const {
    const ContainerItem& item = container(stack);
    return std::span(childLists_).subspan(item.inDocumentOrder, item.count);
}

std::span<const LayoutTree::Index> LayoutTree::drawingOrder(Index stack) const {
    const ContainerItem& item = container(stack);
    return std::span(childLists_).subspan(item.inDrawingOrder, item.count);
}

LayoutTree layOut(const AnyView& root, Size widget, const EnvironmentValues& environment, text::TextEngine& texts,
                  const Diagnostics& diagnostics) {
    LayoutTree tree =
        TreeBuilder::build(root, {sane(widget.width), sane(widget.height)}, environment, texts, diagnostics);
    Measurer measurer(tree, texts);
    Placer(tree, measurer).placeRoot();
    return tree;
}

}  // namespace tavrin::layout
