// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/alignment_dsl.h"

namespace tavrin {

/// A fixed room and, around it, a flexible one; always both. Lengths are in points.
struct FrameModifier {
    static constexpr ModifierType type = ModifierType::frame;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Puts the view into a room of a fixed size and that into one between bounds.";

    LosslessDSLValue<std::optional<float>> width = {};
    LosslessDSLValue<std::optional<float>> height = {};
    LosslessDSLValue<std::optional<float>> minWidth = {};
    LosslessDSLValue<std::optional<float>> maxWidth = {};
    LosslessDSLValue<std::optional<float>> minHeight = {};
    LosslessDSLValue<std::optional<float>> maxHeight = {};
    LosslessDSLValue<std::optional<AlignmentDSL>> alignment = {};

    static constexpr std::tuple fields{
        Field{"width", &FrameModifier::width,
              Note{.text = "The exact width.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .absent = "the view's own width",
                   .example = "40"}},
        Field{"height", &FrameModifier::height,
              Note{.text = "The exact height.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .absent = "the view's own height",
                   .example = "40"}},
        Field{"minWidth", &FrameModifier::minWidth,
              Note{.text = "The least width.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .absent = "the view's own width",
                   .example = "20"}},
        Field{"maxWidth", &FrameModifier::maxWidth,
              Note{.text = "The greatest width; `\"infinity\"` takes all that is offered.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .absent = "the view's own width",
                   .example = R"("infinity")"}},
        Field{"minHeight", &FrameModifier::minHeight,
              Note{.text = "The least height.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .absent = "the view's own height",
                   .example = "20"}},
        Field{"maxHeight", &FrameModifier::maxHeight,
              Note{.text = "The greatest height; `\"infinity\"` takes all that is offered.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .absent = "the view's own height",
                   .example = R"("infinity")"}},
        Field{"alignment", &FrameModifier::alignment,
              Note{.text = "Where the view lies in a larger room.", .defaultValue = R"("center")"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
