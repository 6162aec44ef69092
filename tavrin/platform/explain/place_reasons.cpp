// SPDX-License-Identifier: MIT
#include <optional>

#include <fmt/format.h>

#include "tavrin/platform/explain/reasons.h"
#include "tavrin/platform/explain/words.h"
#include "tavrin/platform/layout/modifier_rules.h"
#include "tavrin/platform/layout/stack_children.h"

namespace tavrin::explain {
namespace {

using layout::Axis;
using Index = PlacedTree::Index;

/// Where a view is aligned in a room.
Reason aligned(const PlacedTree& placed, Index index, Alignment alignment, Size room, const std::string& what) {
    const Rect& frame = placed.node(index).frame;
    const std::string at = inWords(frame.origin);
    if (frame.size == room) return {"fills " + what, fmt::format("It lies at {}, filling {}.", at, what)};
    const bool sticksOut = frame.size.width > room.width + 0.005 || frame.size.height > room.height + 0.005;
    return {fmt::format("{} in {}", name(alignment), what),
            fmt::format("It lies at {}, aligned {} in {} of {}{}.", at, name(alignment), what, inWords(room),
                        sticksOut ? ", out of which it sticks" : "")};
}

std::string_view alignmentAcross(const AnyView& stack) {
    const auto* vertical = stack.as<VStack>();
    return vertical ? name(vertical->alignment) : name(stack.as<HStack>()->alignment);
}

Reason placeInStack(const PlacedTree& placed, Index stack, Index index, Axis axis) {
    const Axis cross = layout::across(axis);
    const std::string at = inWords(placed.node(index).frame.origin);
    const std::string_view alignment = alignmentAcross(placed.view(stack));
    const std::size_t rank = placed.rank(index);
    std::string order = "first";
    if (rank > 0) {
        const double spacing = placed.spacingBefore(index);
        const std::string why =
            layout::givenSpacing(placed.view(stack)) ? "as given" : reasonOfDistance(placed, index, axis);
        order = fmt::format("{} after the view before it ({})", inWords(spacing), why);
    }
    const double room = extent(placed.answer(stack), cross);
    std::string across;
    if (extent(placed.answer(index), cross) == room)
        across =
            fmt::format("taking all of the {}'s {}", axis == Axis::vertical ? "VStack" : "HStack", lengthAlong(cross));
    else
        across = fmt::format("aligned {} in its {} of {}", alignment, lengthAlong(cross), inWords(room));
    const layout::StackShare* const share = placed.share(index);
    std::string brief = ordinal(rank + 1);
    if (share) brief += fmt::format(" of {}", share->siblings);
    brief += axis == Axis::vertical ? " in the VStack" : " in the HStack";
    if (extent(placed.answer(index), cross) != room) brief += fmt::format(", {}", alignment);
    return {brief, fmt::format("It lies at {}: {} in {}, {}.", at, order, placed.called(stack), across)};
}

Reason placeInPadding(const PlacedTree& placed, Index padding, Index index) {
    const Point outside = placed.node(padding).frame.origin;
    const Point inside = placed.node(index).frame.origin;
    return {"", fmt::format("It lies at {}: {} from the leading and {} from the top edge of the padding.",
                            inWords(inside), inWords(inside.x - outside.x), inWords(inside.y - outside.y))};
}

Reason placeWithSecondary(const PlacedTree& placed, Index modifier, Index index) {
    const auto* background = placed.view(modifier).as<Background>();
    const Alignment alignment = background ? background->alignment : placed.view(modifier).as<Overlay>()->alignment;
    return aligned(placed, index, alignment, placed.answer(modifier),
                   background ? "the view it lies behind" : "the view it lies on");
}

}  // namespace

Reason reasonOfPlace(const PlacedTree& placed, Index index) {
    const std::optional<Index> parent = placed.parent(index);
    if (!parent) return aligned(placed, index, Alignment::center, placed.tree().widget(), "the widget");
    const AnyView& around = placed.view(*parent);
    const Size room = placed.answer(*parent);
    switch (around.kind()) {
        case ViewKind::vstack: return placeInStack(placed, *parent, index, Axis::vertical);
        case ViewKind::hstack: return placeInStack(placed, *parent, index, Axis::horizontal);
        case ViewKind::zstack: return aligned(placed, index, around.as<ZStack>()->alignment, room, "the ZStack");
        case ViewKind::fixedFrame: return aligned(placed, index, around.as<FixedFrame>()->alignment, room, "the frame");
        case ViewKind::flexibleFrame:
            return aligned(placed, index, around.as<FlexibleFrame>()->alignment, room, "the frame");
        case ViewKind::geometryReader: return aligned(placed, index, Alignment::topLeading, room, "the GeometryReader");
        case ViewKind::padding:
        case ViewKind::insetPadding: return placeInPadding(placed, *parent, index);
        default: break;
    }
    if (placed.isSecondary(index)) return placeWithSecondary(placed, *parent, index);
    return {"", fmt::format("It lies at {}, where its {} is.", inWords(placed.node(index).frame.origin),
                            around.box().name())};
}

}  // namespace tavrin::explain
