// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/appearance_modifiers.h"

#include "tavrin/nodes/color_string.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/values/mirror_key_path.h"

namespace tavrin {
namespace {

Color foregroundColor(const ColorNode& node, Context& context) {
    if (const std::optional<Color> plain = plainColor(node, context)) return *plain;
    throw TavrinError("ForegroundColorModifier", "invalid color node");
}

Color borderColor(const BorderModifier& border, Context& context) {
    try {
        if (const auto color = plainColor(border.colorNode.wrappedValue, context)) return *color;
    } catch (const TavrinError& error) {
        // The one is no error at all but for those who asked for one, the other is nobody's to forgive.
        if (error.kind == "Precondition" || error.kind == "Budget") throw;
    } catch (const std::exception&) {  // a border that cannot have its colour takes the next one
    }
    return colorFromHexString(border.color.wrappedValue()).value_or(Color::white);
}

Shape outlineOf(const AnyView& view) {
    if (const auto* circle = view.as<Circle>()) return *circle;
    if (const auto* capsule = view.as<Capsule>()) return *capsule;
    if (const auto* rectangle = view.as<RoundedRectangle>()) return *rectangle;
    throw TavrinError("Invalid Shape", "unsupported shape " + view.box().typeName());
}

}  // namespace

AnyView ForegroundColorModifier::modify(AnyView view, Context& context) const {
    return ForegroundColor{.color = within(keyOf<&ForegroundColorModifier::color>,
                                           [&] { return foregroundColor(color.wrappedValue, context); }),
                           .content = std::move(view)};
}

AnyView BackgroundModifier::modify(AnyView content, Context& context) const {
    return Background{
        .background = within(keyOf<&BackgroundModifier::view>, [&] { return view.wrappedValue.render(context); }),
        .content = std::move(content)};
}

AnyView OverlayModifier::modify(AnyView content, Context& context) const {
    return Overlay{.overlay = within(keyOf<&OverlayModifier::view>, [&] { return view.wrappedValue.render(context); }),
                   .content = std::move(content)};
}

AnyView BorderModifier::modify(AnyView view, Context& context) const {
    return Border{
        .color = borderColor(*this, context), .width = double{width.wrappedValue()}, .content = std::move(view)};
}

AnyView ClipShapeModifier::modify(AnyView content, Context& context) const {
    const AnyView rendered = within(keyOf<&ClipShapeModifier::view>, [&] { return view.wrappedValue.render(context); });
    const AnyView& unwrapped = mirrorKeyPath("storage.view", rendered);
    return ClipShape{.shape = outlineOf(unwrapped), .content = std::move(content)};
}

AnyView ClippedModifier::modify(AnyView view, Context&) const {
    return Clipped{.antialiased = false, .content = std::move(view)};
}

AnyView CornerRadiusModifier::modify(AnyView view, Context&) const {
    return CornerRadius{.radius = double{radius.wrappedValue()}, .antialiased = true, .content = std::move(view)};
}

AnyView OpacityModifier::modify(AnyView view, Context&) const {
    return Opacity{.value = double{opacity.wrappedValue()}, .content = std::move(view)};
}

}  // namespace tavrin
