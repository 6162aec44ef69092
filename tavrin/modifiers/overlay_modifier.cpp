// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/overlay_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView OverlayModifier::modify(AnyView content, Context& context) const {
    return Overlay{.overlay = within("view", [&] { return view.wrappedValue.render(context); }),
                   .content = std::move(content)};
}

}  // namespace tavrin
