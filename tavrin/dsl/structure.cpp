// SPDX-License-Identifier: MIT
#include "tavrin/dsl/structure.h"

#include "tavrin/dsl/render_state.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {
namespace {

ViewList renderChildren(std::span<const Node> children, Context& context) {
    ViewList views;
    views.reserve(children.size());
    for (std::size_t i = 0; i < children.size(); ++i)
        within("children", i, [&] { views.push_back(children[i].render(context)); });
    return views;
}

/// A stack node's alignment on the platform; an absent one is the centre.
template <class AlignmentKeyword>
auto alignmentOf(const LosslessDSLValue<std::optional<AlignmentKeyword>>& alignment) {
    return platformValue(alignment.wrappedValue().value_or(Keywords<AlignmentKeyword>::defaultCase));
}

template <class Stack, class StackNode>
AnyView renderStack(const StackNode& node, Context& context) {
    Stack stack{.alignment = alignmentOf(node.alignment),
                .spacing = node.spacing.wrappedValue(),
                .children = renderChildren(node.children.wrappedValue(), context)};
    return applyModifiers(node, std::move(stack), context);
}

}  // namespace

AnyView VStackNode::render(Context& context) const { return renderStack<VStack>(*this, context); }

AnyView HStackNode::render(Context& context) const { return renderStack<HStack>(*this, context); }

AnyView ZStackNode::render(Context& context) const {
    ZStack stack{.alignment = alignmentOf(alignment), .children = renderChildren(children.wrappedValue(), context)};
    return applyModifiers(*this, std::move(stack), context);
}

AnyView SpacerNode::render(Context& context) const { return applyModifiers(*this, Spacer{}, context); }

AnyView EmptyViewNode::render(Context& context) const { return applyModifiers(*this, EmptyView{}, context); }

AnyView RefNode::render(Context& context) const {
    const std::string& referenced = name.wrappedValue;
    if (referenced == "main") throw TavrinError("RefNode", "Can not reference node called \"main\"");
    RenderState& state = RenderState::of(context);
    const auto entry = state.rootNodes->find(referenced);
    if (entry == state.rootNodes->end()) throw TavrinError("RefNode", "node for name: " + referenced + " not found");
    const RenderState::ReferenceScope scope(state, entry->first);
    return renderEntry(*entry, context);
}

}  // namespace tavrin
