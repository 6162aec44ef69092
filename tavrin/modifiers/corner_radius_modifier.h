#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Cuts the view to a rectangle with circular corners.
struct CornerRadiusModifier {
    static constexpr ModifierType type = ModifierType::cornerRadius;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<float> radius = {};

    static constexpr std::tuple fields{Field{"radius", &CornerRadiusModifier::radius}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
