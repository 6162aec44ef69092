// SPDX-License-Identifier: MIT
#include "tavrin/nodes/link_node.h"

#include "tavrin/dsl/address.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {

AnyView LinkNode::render(Context& context) const {
    AnyView label = within(keyOf<&LinkNode::view>, [&] { return view.wrappedValue.render(context); });
    if (const std::optional<URL> destination = convertedLink(url, context))
        label = Link{.destination = *destination, .label = std::move(label)};
    return applyModifiers(*this, std::move(label), context);
}

}  // namespace tavrin
