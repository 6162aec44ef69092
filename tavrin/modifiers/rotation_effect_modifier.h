// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/unit_point_dsl.h"

namespace tavrin {

/// Draws the view turned clockwise, by degrees, around an anchor, by default its centre.
struct RotationEffectModifier {
    static constexpr ModifierType type = ModifierType::rotationEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;
    static constexpr std::string_view summary = "Draws the view turned; the room that it takes stays as it is.";

    LosslessDSLValue<float> angle = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr std::tuple fields{
        Field{"angle", &RotationEffectModifier::angle,
              Note{.text = "How far to turn, clockwise.", .unit = Unit::degrees, .example = "45"}},
        Field{"anchor", &RotationEffectModifier::anchor, anchorNote}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
