// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Draws the view elsewhere, by points; its place stays.
struct OffsetModifier {
    static constexpr ModifierType type = ModifierType::offset;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws the view elsewhere; the room that it takes stays where it is.";

    LosslessDSLValue<float> x = {};
    LosslessDSLValue<float> y = {};

    static constexpr std::tuple fields{
        Field{"x", &OffsetModifier::x,
              Note{.text = "How far to the right, negative to the left.", .unit = Unit::points, .example = "4"}},
        Field{"y", &OffsetModifier::y,
              Note{.text = "How far down, negative up.", .unit = Unit::points, .example = "-4"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
