// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/effect_modifiers.h"

#include "tavrin/dsl/render_state.h"
#include "tavrin/modifiers/kel_clock_widget_kit.h"
#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {
namespace {

TimeZone zoneOf(const std::optional<SharedText>& identifier, Context& context) {
    if (identifier)
        if (const std::optional<TimeZone> zone = TimeZone::named(*identifier)) return *zone;
    return RenderState::of(context).deviceTimeZone(context);
}

}  // namespace

AnyView ScaleEffectModifier::modify(AnyView view, Context&) const {
    return ScaleEffect{.x = double{x.wrappedValue().value_or(1)},
                       .y = double{y.wrappedValue().value_or(1)},
                       .anchor = platformAnchor(anchor.wrappedValue()),
                       .content = std::move(view)};
}

AnyView RotationEffectModifier::modify(AnyView view, Context&) const {
    constexpr double radians = 0.017453292519943295;  // of a degree
    return RotationEffect{.angle = double{angle.wrappedValue()} * radians,
                          .anchor = platformAnchor(anchor.wrappedValue()),
                          .content = std::move(view)};
}

AnyView ClockHandRotationEffectModifier::modify(AnyView view, Context& context) const {
    return KelClockWidgetKit::clockHandRotationEffect(
        std::move(view), KelClockWidgetKit::ClockHandRotationPeriod::custom(double{period.wrappedValue()}),
        zoneOf(timeZone.wrappedValue(), context), platformAnchor(anchor.wrappedValue()));
}

}  // namespace tavrin
