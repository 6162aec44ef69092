#pragma once

#include <unordered_map>
#include <utility>
#include <vector>

#include "tavrin/dsl/node_dictionary.h"
#include "tavrin/platform/foundation/coding_path.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

/// Where in its document each view of a tree comes from. Immutable; safe to read from several threads.
class ViewOrigins {
public:
    ViewOrigins(AnyView root, std::unordered_map<const ViewBox*, CodingPath> paths)
        : root_(std::move(root)), paths_(std::move(paths)) {}

    /// The way to the node or modifier that made a view; of a node behind a reference, to where it is written. Null for
    /// a view that the document did not make itself, such as what a composed view unfolds into.
    [[nodiscard]] const CodingPath* find(const AnyView& view) const;

private:
    AnyView root_;  // keeps the views, and so their addresses
    std::unordered_map<const ViewBox*, CodingPath> paths_;
};

/// Notes while a document is drawn which record made which view.
class OriginRecorder {
public:
    /// Draws a node and notes the views that are its own.
    template <class Draw>
    AnyView record(const Node& node, Draw draw) {
        open_.push_back(node.identity());
        AnyView view = draw();
        note(view, open_.back());
        open_.pop_back();
        return view;
    }
    /// Notes the view that the innermost node under way has made, before its modifiers.
    void noteUnmodified(const AnyView& view) {
        if (!open_.empty()) note(view, open_.back());
    }
    /// Notes what a modifier has made of a view.
    void noteModified(const AnyView& view, const Modifier& modifier) { note(view, modifier.identity()); }

    /// What was noted for a tree, with the ways to the records in the document's nodes.
    [[nodiscard]] ViewOrigins origins(const AnyView& root, const NodeDictionary& nodes) const;

private:
    /// Notes all views in `view` that are not known yet.
    void note(const AnyView& view, const void* record);

    std::unordered_map<const ViewBox*, const void*> records_;
    std::vector<AnyView> kept_;  // so that no address is used again
    std::vector<const void*> open_;
};

}  // namespace tavrin
