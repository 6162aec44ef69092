// SPDX-License-Identifier: MIT
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
    static constexpr std::string_view summary = "Shows a text, broken into lines where its room is too narrow.";

    LosslessDSLValue<SharedText> content = {};
    LosslessDSLValue<std::optional<float>> fontSize = {};
    LosslessDSLValue<std::optional<FontWeight>> fontWeight = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"content", &TextNode::content,
                                             Note{.text = "The text, as it is or as an expression over the model.",
                                                  .example = R"("{{initServerParam.title}}")"}},
                                       Field{"fontSize", &TextNode::fontSize, fontSizeNote},
                                       Field{"fontWeight", &TextNode::fontWeight, fontWeightNote},
                                       Field{"modifiers", &TextNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
