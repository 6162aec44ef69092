// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/padding_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {
namespace {

Edges edgeSet(const std::optional<std::vector<EdgeDSL>>& named) {
    if (!named) return Edges::all;
    Edges edges;
    for (const EdgeDSL edge : *named) {
        switch (edge) {
            case EdgeDSL::top: edges.top = true; break;
            case EdgeDSL::bottom: edges.bottom = true; break;
            case EdgeDSL::leading: edges.leading = true; break;
            case EdgeDSL::trailing: edges.trailing = true; break;
            case EdgeDSL::all: edges = Edges::all; break;
        }
    }
    return edges;
}

}  // namespace

AnyView PaddingModifier::modify(AnyView view, Context&) const {
    return Padding{
        .edges = edgeSet(edges.wrappedValue), .length = double{length.wrappedValue()}, .content = std::move(view)};
}

}  // namespace tavrin
