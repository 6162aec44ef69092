// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/clip_shape_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/values/mirror_key_path.h"

namespace tavrin {
namespace {

Shape outlineOf(const AnyView& view) {
    if (const auto* circle = view.as<Circle>()) return *circle;
    if (const auto* capsule = view.as<Capsule>()) return *capsule;
    if (const auto* rectangle = view.as<RoundedRectangle>()) return *rectangle;
    throw TavrinError("Invalid Shape", "unsupported shape " + view.box().typeName());
}

}  // namespace

AnyView ClipShapeModifier::modify(AnyView content, Context& context) const {
    const AnyView rendered = within("view", [&] { return view.wrappedValue.render(context); });
    const AnyView& unwrapped = mirrorKeyPath("storage.view", rendered);
    return ClipShape{.shape = outlineOf(unwrapped), .content = std::move(content)};
}

}  // namespace tavrin
