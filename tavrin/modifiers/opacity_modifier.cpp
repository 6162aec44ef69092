// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/opacity_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView OpacityModifier::modify(AnyView view, Context&) const {
    return Opacity{.value = double{opacity.wrappedValue()}, .content = std::move(view)};
}

}  // namespace tavrin
