#pragma once

#include "tavrin/nodes/color_node.h"

namespace tavrin {

/// The colour of texts and bare shapes inside.
struct ForegroundColorModifier {
    static constexpr ModifierType type = ModifierType::foregroundColor;
    static constexpr DSLVersion version = DSLVersion::v1;

    DSLValue<ColorNode> color = {};

    static constexpr std::tuple fields{Field{"color", &ForegroundColorModifier::color}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
