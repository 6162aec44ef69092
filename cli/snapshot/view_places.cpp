// SPDX-License-Identifier: MIT
#include "cli/snapshot/view_places.h"

#include <cstddef>

#include "tavrin/platform/layout/layout_printer.h"

namespace tavrin::cli {
namespace {

/// Whether a value of a tree is a view with a place, and not only a colour or a shape inside one.
bool isPlaced(const JSONOutline& outline, JSONOutline::Index index) {
    if (!outline.isObject(index)) return false;
    bool hasFrame = false;
    outline.forEachChild(index,
                         [&](JSONOutline::Index child) { hasFrame = hasFrame || outline.key(child) == "frame"; });
    return hasFrame;
}

}  // namespace

/// 1. Prints the tree, and hears which view each of its objects with a frame is.
/// 2. Counts these in the text: the first is the first view, and so on.
ViewPlaces::ViewPlaces(Widget& widget)
    : known_(widget.document().origins()),
      tree_(layout::tracedLayoutText(widget.layoutTree(), shown_)),
      outline_(tree_),
      paths_(outline_),
      origins_(outline_.values().size()) {
    if (!known_ || tree_.size() > JSONOutline::maximumBytes) return;
    std::size_t next = 0;
    for (JSONOutline::Index index = 0; index < origins_.size() && next < shown_.size(); ++index) {
        if (!isPlaced(outline_, index)) continue;
        const AnyView* const view = shown_[next++];
        if (view) origins_[index] = known_->find(*view);
    }
}

std::optional<CodingPath> ViewPlaces::originOf(const CodingPath& way) {
    for (JSONOutline::Index at = paths_.nearest(way);; at = outline_[at].parent) {
        if (origins_[at]) return *origins_[at];
        if (at == 0) return std::nullopt;
    }
}

}  // namespace tavrin::cli
