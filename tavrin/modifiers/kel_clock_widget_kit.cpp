// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/kel_clock_widget_kit.h"

namespace tavrin::KelClockWidgetKit {

AnyView ClockHandRotationModifier::body(AnyView content) const {
    const ClockHandPeriod turn{namesake<ClockHandPeriod::Hand>(period.which()), period.customSeconds()};
    return ClockHandRotationEffect{
        .period = turn, .timeZone = timeZone, .anchor = anchor, .content = std::move(content)};
}

AnyView clockHandRotationEffect(AnyView view, const ClockHandRotationPeriod& period, const TimeZone& timeZone,
                                UnitPoint anchor) {
    return ClockHandRotationModifier{.period = period, .timeZone = timeZone, .anchor = anchor}.body(std::move(view));
}

}  // namespace tavrin::KelClockWidgetKit
