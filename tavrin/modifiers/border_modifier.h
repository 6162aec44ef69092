// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/nodes/color_node.h"

namespace tavrin {

/// A line inside the view's bounds: in the colour of `colorNode`, else of the colour string, else white. Never fails.
struct BorderModifier {
    static constexpr ModifierType type = ModifierType::border;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws a line along the view's bounds, on their inside.";

    LosslessDSLValue<SharedText> color = {};
    DSLValue<ColorNode> colorNode = {};
    LosslessDSLValue<float> width = {};

    static constexpr std::tuple fields{
        Field{"color", &BorderModifier::color,
              Note{.text = "The colour, as in a colour's `value`, where `colorNode` gives no plain one; white where "
                           "this is none either.",
                   .example = R"("#D1D1D6")"}},
        Field{"colorNode", &BorderModifier::colorNode, Note{.text = "The colour of the line."}},
        Field{"width", &BorderModifier::width,
              Note{.text = "The width of the line.", .unit = Unit::points, .minimum = 0, .example = "1"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
