// SPDX-License-Identifier: MIT
#include "tavrin/nodes/text_node.h"

#include "tavrin/platform/ui/views.h"

namespace tavrin {

AnyView TextNode::render(Context& context) const {
    Text text{.content = content.wrappedValue()};
    if (const std::optional<float> size = fontSize.wrappedValue()) text.font = Font::system(double{*size});
    text.fontWeight = textWeight(fontWeight.wrappedValue());
    return applyModifiers(*this, std::move(text), context);
}

}  // namespace tavrin
