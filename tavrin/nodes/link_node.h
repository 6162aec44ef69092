#pragma once

#include <string>
#include <vector>

#include "tavrin/dsl/node.h"

namespace tavrin {

/// Makes another node lead to an address when it is tapped; one that is no address leaves the label as it is.
struct LinkNode {
    static constexpr NodeType type = NodeType::link;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<SharedText> url = {};
    DSLValue<Node> view = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"url", &LinkNode::url}, Field{"view", &LinkNode::view},
                                       Field{"modifiers", &LinkNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
