// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/corner_radius_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView CornerRadiusModifier::modify(AnyView view, Context&) const {
    return CornerRadius{.radius = double{radius.wrappedValue()}, .antialiased = true, .content = std::move(view)};
}

}  // namespace tavrin
