#pragma once

#include "tavrin/dsl/dsl_version.h"
#include "tavrin/dsl/node_dictionary.h"

namespace tavrin {

/// A document: its version and its named nodes, of which "main" is the root of the view.
struct DSLRoot {
    DSLVersion version = DSLVersion::v1;
    NodeDictionary nodes;

    static constexpr std::tuple fields{Field{"version", &DSLRoot::version}, Field{"nodes", &DSLRoot::nodes}};
    friend bool operator==(const DSLRoot&, const DSLRoot&) = default;
};

template <>
struct Coding<NodeDictionary> {
    static NodeDictionary decode(const Decoder& decoder);
    static void encode(const NodeDictionary& nodes, JSONWriter& writer);
};

}  // namespace tavrin
