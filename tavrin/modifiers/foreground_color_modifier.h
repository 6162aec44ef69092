// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/nodes/color_node.h"

namespace tavrin {

/// The colour of texts and bare shapes inside.
struct ForegroundColorModifier {
    static constexpr ModifierType type = ModifierType::foregroundColor;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Colours texts and bare shapes inside the view; the innermost such modifier holds.";

    DSLValue<ColorNode> color = {};

    static constexpr std::tuple fields{
        Field{"color", &ForegroundColorModifier::color, Note{.text = "The colour, which may not be a gradient."}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
