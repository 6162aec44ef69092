#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Fades the view; the number is passed on as it is.
struct OpacityModifier {
    static constexpr ModifierType type = ModifierType::opacity;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<float> opacity = {};

    static constexpr std::tuple fields{Field{"opacity", &OpacityModifier::opacity}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
