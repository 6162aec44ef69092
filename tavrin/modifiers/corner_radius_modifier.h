// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Cuts the view to a rectangle with circular corners.
struct CornerRadiusModifier {
    static constexpr ModifierType type = ModifierType::cornerRadius;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Cuts the view to a rectangle with round corners.";

    LosslessDSLValue<float> radius = {};

    static constexpr std::tuple fields{
        Field{"radius", &CornerRadiusModifier::radius,
              Note{.text = "The radius of the corners, at most half of the shorter side.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .example = "12"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
