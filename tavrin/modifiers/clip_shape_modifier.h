// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/node.h"

namespace tavrin {

/// Cuts the view to a bare circle, capsule or rounded rectangle.
struct ClipShapeModifier {
    static constexpr ModifierType type = ModifierType::clipShape;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Cuts the view to a shape of its size.";

    DSLValue<Node> view = {};

    static constexpr std::tuple fields{
        Field{"view", &ClipShapeModifier::view,
              Note{.text = "A circle, capsule or rounded rectangle that has no colour, outline or modifiers."}}};

    [[nodiscard]] AnyView modify(AnyView content, Context& context) const;
};

}  // namespace tavrin
