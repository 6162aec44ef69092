// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/clock_hand_rotation_effect_modifier.h"

#include "tavrin/dsl/render_state.h"
#include "tavrin/modifiers/kel_clock_widget_kit.h"

namespace tavrin {
namespace {

TimeZone zoneOf(const std::optional<SharedText>& identifier, Context& context) {
    if (identifier)
        if (const std::optional<TimeZone> zone = TimeZone::named(*identifier)) return *zone;
    return RenderState::of(context).deviceTimeZone(context);
}

}  // namespace

AnyView ClockHandRotationEffectModifier::modify(AnyView view, Context& context) const {
    return KelClockWidgetKit::clockHandRotationEffect(
        std::move(view), KelClockWidgetKit::ClockHandRotationPeriod::custom(double{period.wrappedValue()}),
        zoneOf(timeZone.wrappedValue(), context), platformAnchor(anchor.wrappedValue()));
}

}  // namespace tavrin
