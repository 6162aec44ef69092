// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/aspect_ratio_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView AspectRatioModifier::modify(AnyView view, Context&) const {
    return AspectRatio{.ratio = aspectRatio.wrappedValue(),
                       .contentMode = namesake<tavrin::ContentMode>(contentMode.wrappedValue()),
                       .content = std::move(view)};
}

}  // namespace tavrin
