// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/offset_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView OffsetModifier::modify(AnyView view, Context&) const {
    return Offset{.x = double{x.wrappedValue()}, .y = double{y.wrappedValue()}, .content = std::move(view)};
}

}  // namespace tavrin
