// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// When the view is drawn among the children of its stack: ascending.
struct ZIndexModifier {
    static constexpr ModifierType type = ModifierType::zIndex;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Changes when the view is drawn among the children of its stack.";

    LosslessDSLValue<float> zIndex = {};

    static constexpr std::tuple fields{
        Field{"zIndex", &ZIndexModifier::zIndex,
              Note{.text = "Children with greater numbers are drawn later, in front; 0 where the modifier is missing.",
                   .example = "1"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
