#pragma once

#include "tavrin/nodes/color_node.h"

namespace tavrin {

/// A line inside the view's bounds: in the colour of `colorNode`, else of the colour string, else white. Never fails.
struct BorderModifier {
    static constexpr ModifierType type = ModifierType::border;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<SharedText> color = {};
    DSLValue<ColorNode> colorNode = {};
    LosslessDSLValue<float> width = {};

    static constexpr std::tuple fields{Field{"color", &BorderModifier::color},
                                       Field{"colorNode", &BorderModifier::colorNode},
                                       Field{"width", &BorderModifier::width}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
