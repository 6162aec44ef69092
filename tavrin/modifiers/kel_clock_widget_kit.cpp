// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/kel_clock_widget_kit.h"

namespace tavrin::KelClockWidgetKit {
namespace {

ClockHandPeriod platformValue(const ClockHandRotationPeriod& period) {
    return {namesake<ClockHandPeriod::Hand>(period.which()), period.customSeconds()};
}

}  // namespace

AnyView ClockHandRotationModifier::body(AnyView content) const {
    return ClockHandRotationEffect{
        .period = platformValue(period), .timeZone = timeZone, .anchor = anchor, .content = std::move(content)};
}

AnyView clockHandRotationEffect(AnyView view, const ClockHandRotationPeriod& period, const TimeZone& timeZone,
                                UnitPoint anchor) {
    return ClockHandRotationModifier{.period = period, .timeZone = timeZone, .anchor = anchor}.body(std::move(view));
}

}  // namespace tavrin::KelClockWidgetKit
