// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/nodes/font_weight.h"

namespace tavrin {

/// A live count from or to a moment. The timestamp is in seconds since 1970 and held in single precision, so that
/// present-day moments are multiples of 128 seconds; the size is in points.
struct TimerNode {
    static constexpr NodeType type = NodeType::timer;
    static constexpr DSLVersion version = DSLVersion::v1_1;
    static constexpr std::string_view summary = "Shows the time since or until a moment, such as 12:34 or 1:02:03.";

    LosslessDSLValue<std::optional<float>> timestamp = {};
    LosslessDSLValue<std::optional<float>> fontSize = {};
    LosslessDSLValue<std::optional<FontWeight>> fontWeight = {};
    LosslessDSLValue<std::optional<bool>> monospace = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{
        Field{"timestamp", &TimerNode::timestamp,
              Note{.text = "The moment, counted from the beginning of 1970 UTC and rounded to a multiple of 128.",
                   .unit = Unit::seconds,
                   .absent = "now, when the document is loaded",
                   .example = "1700000128"}},
        Field{"fontSize", &TimerNode::fontSize, fontSizeNote},
        Field{"fontWeight", &TimerNode::fontWeight, fontWeightNote},
        Field{"monospace", &TimerNode::monospace,
              Note{.text = "Whether all digits are equally wide, 20 points high where no size is given; `false` also "
                           "makes `fontSize` ineffective.",
                   .absent = "digits of their own widths",
                   .example = "true"}},
        Field{"modifiers", &TimerNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
