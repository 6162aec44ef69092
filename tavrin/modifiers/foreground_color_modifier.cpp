// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/foreground_color_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/values/mirror_key_path.h"

namespace tavrin {

namespace {

Color plainColor(const ColorNode& node, Context& context) {
    const AnyView rendered = node.render(context);
    if (const Color* plain = mirrorKeyPath("storage.view", rendered).as<Color>()) return *plain;
    throw TavrinError("ForegroundColorModifier", "invalid color node");
}

}  // namespace

AnyView ForegroundColorModifier::modify(AnyView view, Context& context) const {
    return ForegroundColor{.color = within("color", [&] { return plainColor(color.wrappedValue, context); }),
                           .content = std::move(view)};
}

}  // namespace tavrin
