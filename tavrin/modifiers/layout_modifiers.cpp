// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/layout_modifiers.h"

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

AnyView FrameModifier::modify(AnyView view, Context&) const {
    const Alignment place = platformValue(alignment.wrappedValue().value_or(AlignmentDSL::center));
    FixedFrame fixed{
        .width = width.wrappedValue(), .height = height.wrappedValue(), .alignment = place, .content = std::move(view)};
    return FlexibleFrame{.minWidth = minWidth.wrappedValue(),
                         .maxWidth = maxWidth.wrappedValue(),
                         .minHeight = minHeight.wrappedValue(),
                         .maxHeight = maxHeight.wrappedValue(),
                         .alignment = place,
                         .content = std::move(fixed)};
}

AnyView PaddingModifier::modify(AnyView view, Context&) const {
    return Padding{
        .edges = edgeSet(edges.wrappedValue), .length = double{length.wrappedValue()}, .content = std::move(view)};
}

AnyView OffsetModifier::modify(AnyView view, Context&) const {
    return Offset{.x = double{x.wrappedValue()}, .y = double{y.wrappedValue()}, .content = std::move(view)};
}

AnyView AspectRatioModifier::modify(AnyView view, Context&) const {
    return AspectRatio{.ratio = aspectRatio.wrappedValue(),
                       .contentMode = namesake<tavrin::ContentMode>(contentMode.wrappedValue()),
                       .content = std::move(view)};
}

AnyView LineLimitModifier::modify(AnyView view, Context&) const {
    return LineLimit{.number = number.wrappedValue(), .content = std::move(view)};
}

AnyView ZIndexModifier::modify(AnyView view, Context&) const {
    return ZIndex{.value = double{zIndex.wrappedValue()}, .content = std::move(view)};
}

}  // namespace tavrin
