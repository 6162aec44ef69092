#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/unit_point_dsl.h"

namespace tavrin {

/// Draws the view turned clockwise, by degrees, around an anchor, by default its centre.
struct RotationEffectModifier {
    static constexpr ModifierType type = ModifierType::rotationEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;

    LosslessDSLValue<float> angle = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr std::tuple fields{Field{"angle", &RotationEffectModifier::angle},
                                       Field{"anchor", &RotationEffectModifier::anchor}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
