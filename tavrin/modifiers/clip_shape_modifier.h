#pragma once

#include "tavrin/dsl/node.h"

namespace tavrin {

/// Cuts the view to a bare circle, capsule or rounded rectangle.
struct ClipShapeModifier {
    static constexpr ModifierType type = ModifierType::clipShape;
    static constexpr DSLVersion version = DSLVersion::v1;

    DSLValue<Node> view = {};

    static constexpr std::tuple fields{Field{"view", &ClipShapeModifier::view}};

    [[nodiscard]] AnyView modify(AnyView content, Context& context) const;
};

}  // namespace tavrin
