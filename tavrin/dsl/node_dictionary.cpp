// SPDX-License-Identifier: MIT
#include "tavrin/dsl/node_dictionary.h"

namespace tavrin {

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

NodeDictionary Coding<NodeDictionary>::decode(const Decoder& decoder) {
    decoder.require(JSONKind::object);
    NodeDictionary nodes;
    for (JSONElement::Walk walk(decoder.value()); walk.next();) {
        const auto place = nodes.lower_bound(walk.key());
        if (place != nodes.end() && place->first == walk.key()) continue;  // the first of equal names holds
        nodes.emplace_hint(place, walk.key(), tavrin::decode<Node>(decoder.member(walk.key(), walk.value())));
    }
    return nodes;
}

void Coding<NodeDictionary>::encode(const NodeDictionary& nodes, JSONWriter& writer) {
    writer.beginObject();
    for (const auto& [name, node] : nodes) tavrin::encode(node, writer.key(name));
    writer.endObject();
}

}  // namespace tavrin
