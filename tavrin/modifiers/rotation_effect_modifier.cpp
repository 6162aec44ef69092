// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/rotation_effect_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView RotationEffectModifier::modify(AnyView view, Context&) const {
    constexpr double radians = 0.017453292519943295;  // of a degree
    return RotationEffect{.angle = double{angle.wrappedValue()} * radians,
                          .anchor = platformAnchor(anchor.wrappedValue()),
                          .content = std::move(view)};
}

}  // namespace tavrin
