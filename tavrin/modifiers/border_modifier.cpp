// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/border_modifier.h"

#include "tavrin/nodes/color_string.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/values/mirror_key_path.h"

namespace tavrin {
namespace {

std::optional<Color> colorOf(const ColorNode& node, Context& context) {
    try {
        const AnyView rendered = node.render(context);
        const Color* color = mirrorKeyPath("storage.view", rendered).as<Color>();
        return color != nullptr ? std::optional(*color) : std::nullopt;
    } catch (const TavrinError& error) {
        if (error.kind == "Precondition") throw;  // no error at all, but for those who asked for one
        return std::nullopt;
    } catch (const std::exception&) {  // a border that cannot have its colour takes the next one
        return std::nullopt;
    }
}

Color borderColor(const BorderModifier& border, Context& context) {
    if (const std::optional<Color> color = colorOf(border.colorNode.wrappedValue, context)) return *color;
    return colorFromHexString(border.color.wrappedValue()).value_or(Color::white);
}

}  // namespace

AnyView BorderModifier::modify(AnyView view, Context& context) const {
    return Border{
        .color = borderColor(*this, context), .width = double{width.wrappedValue()}, .content = std::move(view)};
}

}  // namespace tavrin
