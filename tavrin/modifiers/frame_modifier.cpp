// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/frame_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

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

}  // namespace tavrin
