// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/platform/ui/color.h"
#include "tavrin/values/unit_point_dsl.h"

namespace tavrin {

/// A solid colour, one that follows the appearance, or a linear gradient; as a node it fills its room, and it is the
/// type of every colour-valued property.
struct ColorNode {
    static constexpr NodeType type = NodeType::color;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Fills its room with a colour, one that follows the appearance, or a linear gradient. Also the value of every "
        "key that takes a colour; `type` may be left out there.";

    LosslessDSLValue<std::optional<bool>> gradient = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> start = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> end = {};
    LosslessDSLValue<SharedText> value = {};
    LosslessDSLValue<std::optional<SharedText>> dark = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{
        Field{"gradient", &ColorNode::gradient,
              Note{.text = "Whether to draw a gradient of the colours in `value`.", .defaultValue = "false"}},
        Field{"start", &ColorNode::start,
              Note{.text = "Where the gradient begins; a gradient needs it.",
                   .absent = "no gradient can be drawn",
                   .example = R"("topLeading")"}},
        Field{"end", &ColorNode::end,
              Note{.text = "Where the gradient ends; a gradient needs it.",
                   .absent = "no gradient can be drawn",
                   .example = R"("bottomTrailing")"}},
        Field{"value", &ColorNode::value,
              Note{.text = "The colour as `#RRGGBB`, or as `#PPRRGGBB` with its opacity in per cent, `00` to `99`; for "
                           "a gradient several of these, joined by `-`. The `#` may be left out.",
                   .example = R"("#FF8800")"}},
        Field{"dark", &ColorNode::dark,
              Note{.text = "The colour in dark appearance; a gradient ignores it.",
                   .absent = "`value` in both appearances",
                   .example = R"("#FFB340")"}},
        Field{"modifiers", &ColorNode::modifiers, modifiersNote}};

    /// Binds as every record does; but models carry colours with a hexadecimal alpha, documents do not, so a "value"
    /// that comes from the model is converted.
    void bindToModel(const ModelContext& model);

    [[nodiscard]] AnyView render(Context& context) const;
};

/// The plain colour that a node draws; none where it draws anything else.
[[nodiscard]] std::optional<Color> plainColor(const ColorNode& node, Context& context);

}  // namespace tavrin
