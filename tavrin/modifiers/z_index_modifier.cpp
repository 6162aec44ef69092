// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/z_index_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView ZIndexModifier::modify(AnyView view, Context&) const {
    return ZIndex{.value = double{zIndex.wrappedValue()}, .content = std::move(view)};
}

}  // namespace tavrin
