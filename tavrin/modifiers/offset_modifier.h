#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Draws the view elsewhere, by points; its place stays.
struct OffsetModifier {
    static constexpr ModifierType type = ModifierType::offset;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<float> x = {};
    LosslessDSLValue<float> y = {};

    static constexpr std::tuple fields{Field{"x", &OffsetModifier::x}, Field{"y", &OffsetModifier::y}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
