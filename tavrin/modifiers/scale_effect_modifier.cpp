// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/scale_effect_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView ScaleEffectModifier::modify(AnyView view, Context&) const {
    return ScaleEffect{.x = double{x.wrappedValue().value_or(1)},
                       .y = double{y.wrappedValue().value_or(1)},
                       .anchor = platformAnchor(anchor.wrappedValue()),
                       .content = std::move(view)};
}

}  // namespace tavrin
