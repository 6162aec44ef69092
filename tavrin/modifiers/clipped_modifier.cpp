// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/clipped_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView ClippedModifier::modify(AnyView view, Context&) const {
    return Clipped{.antialiased = false, .content = std::move(view)};
}

}  // namespace tavrin
