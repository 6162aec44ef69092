// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "tavrin/dsl/node.h"

namespace tavrin {

/// A picture by its address, and a second one for when the first yields nothing.
struct WebImageNode {
    static constexpr NodeType type = NodeType::webImage;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Draws a picture from an address, stretched to its room; `aspectRatio` keeps its ratio.";

    LosslessDSLValue<SharedText> url = {};
    LosslessDSLValue<std::optional<SharedText>> alt = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{
        Field{"url", &WebImageNode::url,
              Note{.text = "The address of the picture.", .example = R"("https://example.com/photo.jpg")"}},
        Field{"alt", &WebImageNode::alt,
              Note{.text = "The address of another picture, drawn where the first can not be had.",
                   .absent = "nothing is drawn then",
                   .example = R"("https://example.com/small.jpg")"}},
        Field{"modifiers", &WebImageNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
