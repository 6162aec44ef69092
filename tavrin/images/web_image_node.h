#pragma once

#include <optional>
#include <vector>

#include "tavrin/dsl/node.h"

namespace tavrin {

/// A picture by its address, and a second one for when the first yields nothing.
struct WebImageNode {
    static constexpr NodeType type = NodeType::webImage;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<SharedText> url = {};
    LosslessDSLValue<std::optional<SharedText>> alt = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"url", &WebImageNode::url}, Field{"alt", &WebImageNode::alt},
                                       Field{"modifiers", &WebImageNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
