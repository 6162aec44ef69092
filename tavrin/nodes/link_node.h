// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tavrin/dsl/node.h"

namespace tavrin {

/// Makes another node lead to an address when it is tapped; one that is no address leaves the label as it is.
struct LinkNode {
    static constexpr NodeType type = NodeType::link;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Makes another node lead to an address when it is tapped. In `systemSmall` and the accessory families nothing "
        "but a `widgetURL` opens.";

    LosslessDSLValue<SharedText> url = {};
    DSLValue<Node> view = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{
        Field{"url", &LinkNode::url,
              Note{.text = "The address that opens; the node can not be tapped where it is no address.",
                   .example = R"("https://example.com/news/1")"}},
        Field{"view", &LinkNode::view, Note{.text = "The node that is drawn and can be tapped."}},
        Field{"modifiers", &LinkNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
