// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Fades the view; the number is passed on as it is.
struct OpacityModifier {
    static constexpr ModifierType type = ModifierType::opacity;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Fades the view.";

    LosslessDSLValue<float> opacity = {};

    static constexpr std::tuple fields{Field{
        "opacity", &OpacityModifier::opacity,
        Note{.text = "How much of the view can be seen; 0 is nothing.", .minimum = 0, .maximum = 1, .example = "0.5"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
