#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/nodes/font_weight.h"

namespace tavrin {

/// A fixed or bound string. The size is in points.
struct TextNode {
    static constexpr NodeType type = NodeType::text;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<SharedText> content = {};
    LosslessDSLValue<std::optional<float>> fontSize = {};
    LosslessDSLValue<std::optional<FontWeight>> fontWeight = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"content", &TextNode::content}, Field{"fontSize", &TextNode::fontSize},
                                       Field{"fontWeight", &TextNode::fontWeight},
                                       Field{"modifiers", &TextNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
