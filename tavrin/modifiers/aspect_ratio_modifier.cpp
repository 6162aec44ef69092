// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/aspect_ratio_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView AspectRatioModifier::modify(AnyView view, Context&) const {
    const bool fills = contentMode.wrappedValue() == ContentMode::fill;
    return AspectRatio{.ratio = aspectRatio.wrappedValue(),
                       .contentMode = fills ? tavrin::ContentMode::fill : tavrin::ContentMode::fit,
                       .content = std::move(view)};
}

}  // namespace tavrin
