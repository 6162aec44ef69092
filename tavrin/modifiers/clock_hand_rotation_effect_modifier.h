#pragma once

#include <optional>
#include <string>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/unit_point_dsl.h"

namespace tavrin {

/// Draws the view turned like a clock's hand around an anchor, by default its centre: once in a period of seconds, in
/// a time zone. A zone that is absent or not known is the device's.
struct ClockHandRotationEffectModifier {
    static constexpr ModifierType type = ModifierType::clockHandRotationEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;

    LosslessDSLValue<float> period = {};
    LosslessDSLValue<std::optional<SharedText>> timeZone = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr std::tuple fields{Field{"period", &ClockHandRotationEffectModifier::period},
                                       Field{"timeZone", &ClockHandRotationEffectModifier::timeZone},
                                       Field{"anchor", &ClockHandRotationEffectModifier::anchor}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
