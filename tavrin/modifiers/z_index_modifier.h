#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// When the view is drawn among the children of its stack: ascending.
struct ZIndexModifier {
    static constexpr ModifierType type = ModifierType::zIndex;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<float> zIndex = {};

    static constexpr std::tuple fields{Field{"zIndex", &ZIndexModifier::zIndex}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
