// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tavrin/dsl/node_dictionary.h"
#include "tavrin/dsl/view_origins.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"

namespace tavrin {

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

    using Entry = std::pair<const ViewBox* const, const void*>;
    std::unordered_map<const ViewBox*, const void*, std::hash<const ViewBox*>, std::equal_to<>, pool::Allocator<Entry>>
        records_;
    pool::Vector<AnyView> kept_;  // so that no address is used again
    std::vector<const void*> open_;
};

/// The way from a document's root to a node or modifier, which its identity names; none for those of other documents.
[[nodiscard]] std::optional<CodingPath> pathOf(const void* record, const NodeDictionary& nodes);

}  // namespace tavrin
