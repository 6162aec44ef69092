// SPDX-License-Identifier: MIT
#include <optional>
#include <string_view>
#include <vector>

#include "tavrin/dsl/context.h"
#include "tavrin/dsl/node.h"
#include "tavrin/dsl/registry.h"
#include "tavrin/dsl/render_state.h"
#include "tavrin/dsl/structure.h"
#include "tavrin/platform/foundation/tavrin_error.h"

// Decoding a node or a modifier by its "type", and drawing it.

namespace tavrin {
namespace {

constexpr std::array<std::string_view, 1> typeKey{"type"};

template <class Tag, class Registry>
Tag decodeTag(const Decoder& decoder, const Registry& registry) {
    decoder.require(JSONKind::string);
    if (const std::optional<Tag> tag = fromRawValue<Tag>(decoder.value().string())) return *tag;
    std::vector<std::string_view> words;  // a reserved one would be refused next
    for (std::size_t i = 0; i < registry.size(); ++i)
        if (registry[i]) words.push_back(Keywords<Tag>::raw[i]);
    failUnknownKeyword(decoder, Keywords<Tag>::typeName, words);
}

/// Decodes the tag and then, from the same object, the record that is registered for it. Some tags are reserved and
/// have none.
template <class Tagged, class Tag, class Registry>
Tagged decodeTagged(const Decoder& decoder, const Registry& registry) {
    decoder.require(JSONKind::object);
    const JSONElement type = decoder.value().findMember<typeKey>();
    if (!type.exists()) decoder.failKeyNotFound(typeKey[0]);
    const Decoder typeDecoder = decoder.member(typeKey[0], type);
    const Tag tag = decodeTag<Tag>(typeDecoder, registry);
    if (const auto decodeRecord = registry[static_cast<std::size_t>(tag)]) return decodeRecord(decoder);
    typeDecoder.failDataCorrupted("Type unsupported");
}

}  // namespace

Node::Node() : Node(EmptyViewNode{}) {}

Node Coding<Node>::decode(const Decoder& decoder) {
    if (decoder.isTooDeep())
        throw TavrinError("Engine",
                          "nodes are nested deeper than " + toText(JSONText::maximumDepth) + " levels of JSON");
    return decodeTagged<Node, NodeType>(decoder, registerNodeType());
}

void Coding<Node>::encode(const Node& node, JSONWriter& writer) { encodeTagged(*node.box_, writer); }

Modifier Coding<Modifier>::decode(const Decoder& decoder) {
    return decodeTagged<Modifier, ModifierType>(decoder, registerMonifierType());
}

void Coding<Modifier>::encode(const Modifier& modifier, JSONWriter& writer) { encodeTagged(*modifier.box_, writer); }

AnyView Node::render(Context& context) const {
    RenderState& state = RenderState::of(context);
    const RenderState::NodeScope scope(state, context);
    const auto draw = [&] {
        if (state.modelContext == nullptr || !box_->needsBinding()) return box_->render(context);
        return box_->renderBound(context, *state.modelContext);
    };
    return state.recorder ? state.recorder->record(*this, draw) : draw();
}

AnyView applyModifiers(std::span<const Modifier> modifiers, AnyView view, Context& context) {
    RenderState& state = RenderState::of(context);
    if (state.recorder) state.recorder->noteUnmodified(view);
    for (std::size_t i = 0; i < modifiers.size(); ++i)
        within("modifiers", i, [&] {
            state.countModifier(context);
            view = state.modelContext == nullptr
                       ? modifiers[i].modify(std::move(view), context)
                       : modifiers[i].modifyBound(std::move(view), context, *state.modelContext);
            if (state.recorder) state.recorder->noteModified(view, modifiers[i]);
        });
    return view;
}

AnyView renderEntry(const NodeDictionary::value_type& entry, Context& context) {
    try {
        return entry.second.render(context);
    } catch (PlacedError& error) {
        error.enclose(entry.first);
        error.enclose("nodes");
        error.isRooted = true;
        throw;
    }
}

}  // namespace tavrin
