// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/background_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView BackgroundModifier::modify(AnyView content, Context& context) const {
    return Background{.background = within("view", [&] { return view.wrappedValue.render(context); }),
                      .content = std::move(content)};
}

}  // namespace tavrin
