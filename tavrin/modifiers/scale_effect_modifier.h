#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/unit_point_dsl.h"

namespace tavrin {

/// Draws the view larger or smaller around an anchor, by default its centre; an absent factor is 1.
struct ScaleEffectModifier {
    static constexpr ModifierType type = ModifierType::scaleEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;

    LosslessDSLValue<std::optional<float>> x = {};
    LosslessDSLValue<std::optional<float>> y = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr std::tuple fields{Field{"x", &ScaleEffectModifier::x}, Field{"y", &ScaleEffectModifier::y},
                                       Field{"anchor", &ScaleEffectModifier::anchor}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
