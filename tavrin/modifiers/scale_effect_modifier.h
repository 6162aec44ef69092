// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/unit_point_dsl.h"

namespace tavrin {

/// Draws the view larger or smaller around an anchor, by default its centre; an absent factor is 1.
struct ScaleEffectModifier {
    static constexpr ModifierType type = ModifierType::scaleEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;
    static constexpr std::string_view summary =
        "Draws the view larger or smaller; the room that it takes stays as it is.";

    LosslessDSLValue<std::optional<float>> x = {};
    LosslessDSLValue<std::optional<float>> y = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr std::tuple fields{
        Field{"x", &ScaleEffectModifier::x,
              Note{.text = "The factor of the width; negative mirrors.", .defaultValue = "1", .example = "0.5"}},
        Field{"y", &ScaleEffectModifier::y,
              Note{.text = "The factor of the height; negative mirrors.", .defaultValue = "1", .example = "0.5"}},
        Field{"anchor", &ScaleEffectModifier::anchor, anchorNote}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
