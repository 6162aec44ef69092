// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/layout_tree.h"

#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/kept_answers.h"
#include "tavrin/platform/layout/loaded_bodies.h"
#include "tavrin/platform/layout/measurer.h"
#include "tavrin/platform/layout/placer.h"
#include "tavrin/platform/layout/tree_builder.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::layout {
namespace {

double sane(double length) { return std::isfinite(length) && length > 0 ? length : 0; }

}  // namespace

LayoutTree::LayoutTree(Size widget, const EnvironmentValues& environment)
    : environment_(environment), widget_{sane(widget.width), sane(widget.height)} {}

LayoutTree::Index LayoutTree::content(Index modifier) const {
    const ViewKind kind = nodes_[modifier].kind;
    if (kind == ViewKind::geometryReader) return readers_[nodes_[modifier].detail].content;
    return traitsOf(kind).holdsSecond() ? nodes_[modifier + 1].end : modifier + 1;
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

void LayoutTree::noteOrigin(TavrinError& error, Index index) const {
    const auto holds = [&](Index outer) { return outer <= index && index < nodes_[outer].end; };
    // What is around a view comes before it in the list; the content of a geometry reader that has none yet is 0.
    for (Index outer = index + 1; outer-- > 0 && !error.origin;) {
        const bool isReader = nodes_[outer].kind == ViewKind::geometryReader && content(outer) > 0;
        if (!holds(outer) && !(isReader && holds(content(outer)))) continue;
        index = outer;
        error.origin = nodes_[outer].view->box().origin;
    }
}

LayoutTree layOut(const AnyView& root, Size widget, const EnvironmentValues& environment, text::TextEngine& texts,
                  const Diagnostics& diagnostics, Recording recording, LoadedBodies* loaded, const LayoutTree* before) {
    LayoutTree tree(widget, environment);
    if (recording == Recording::placements) tree.placements_ = std::make_unique<Placements>();
    std::optional<LoadedBodies> own;
    if (!loaded) loaded = &own.emplace(LoadedBodies::under(root));
    Measurer measurer(tree, texts);
    TreeBuilder builder(tree, *loaded, texts, diagnostics);
    builder.addRoot(root);
    measurer.takeIn();
    const bool isComparable = before && before->environment().displayScale == environment.displayScale;
    const EarlierLayout earlier = isComparable ? EarlierLayout(*before, tree) : EarlierLayout();
    measurer.takeOver(earlier);
    Placer placer(tree, measurer, earlier);
    KeptAnswers kept;
    if (recording == Recording::answers) placer.keepProposals(kept.proposals);
    try {
        placer.placeRoot();
        // Contents may hold further readers, which join the list.
        for (std::size_t next = 0; next < placer.placedReaders().size(); ++next) {
            const LayoutTree::Index reader = placer.placedReaders()[next];
            builder.addContent(reader);
            measurer.takeIn();
            placer.placeContent(reader);
        }
    } catch (TavrinError& error) {
        tree.noteOrigin(error, measurer.lastAsked());
        throw;
    }
    if (recording == Recording::answers) {
        kept.proposals.resize(tree.nodes_.size());
        measurer.giveAway(kept);
        tree.answers_ = std::make_shared<const KeptAnswers>(std::move(kept));
    }
    return tree;
}

}  // namespace tavrin::layout
