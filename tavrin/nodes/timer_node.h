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

    LosslessDSLValue<std::optional<float>> timestamp = {};
    LosslessDSLValue<std::optional<float>> fontSize = {};
    LosslessDSLValue<std::optional<FontWeight>> fontWeight = {};
    LosslessDSLValue<std::optional<bool>> monospace = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{
        Field{"timestamp", &TimerNode::timestamp}, Field{"fontSize", &TimerNode::fontSize},
        Field{"fontWeight", &TimerNode::fontWeight}, Field{"monospace", &TimerNode::monospace},
        Field{"modifiers", &TimerNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
