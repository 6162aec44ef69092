// SPDX-License-Identifier: MIT
#include "tavrin/dsl/node.h"

#include "tavrin/dsl/registry.h"
#include "tavrin/dsl/render_state.h"
#include "tavrin/dsl/structure.h"
#include "tavrin/platform/foundation/budget/meter.h"

namespace tavrin {

Node::Node() : Node(EmptyViewNode{}) {}

AnyView Node::render(Context& context) const {
    RenderState& state = RenderState::of(context);
    const RenderState::NodeScope scope(state, context);
    Meter::ofThisThread().step();
    const auto draw = [&] {
        if (state.modelContext == nullptr || !box_->needsBinding()) return box_->render(context);
        return box_->renderBound(context, *state.modelContext);
    };
    AnyView view = state.recorder ? state.recorder->record(*this, draw) : draw();
    view.noteOrigin(box_->identity());
    return view;
}

AnyView applyModifiers(std::span<const Modifier> modifiers, AnyView view, Context& context) {
    RenderState& state = RenderState::of(context);
    if (state.recorder) state.recorder->noteUnmodified(view);
    for (std::size_t i = 0; i < modifiers.size(); ++i)
        within("modifiers", i, [&] {
            state.countModifier(context);
            Meter::ofThisThread().step();
            view = state.modelContext == nullptr
                       ? modifiers[i].modify(std::move(view), context)
                       : modifiers[i].modifyBound(std::move(view), context, *state.modelContext);
            if (state.recorder) state.recorder->noteModified(view, modifiers[i]);
        });
    return view;
}

Node Coding<Node>::decode(const Decoder& decoder) {
    if (decoder.isTooDeep())
        throw TavrinError("Engine",
                          "nodes are nested deeper than " + toText(JSONText::maximumDepth) + " levels of JSON");
    return decodeTagged<Node, NodeType>(decoder, RecordRegistries::of(decoder).nodes);
}

void Coding<Node>::encode(const Node& node, JSONWriter& writer) { encodeTagged(*node.box_, writer); }

}  // namespace tavrin
