// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>

#include "tavrin/dsl/node.h"

namespace tavrin {

/// The named nodes of a document.
using NodeDictionary = std::map<std::string, Node, std::less<>, pool::Allocator<std::pair<const std::string, Node>>>;

/// Draws a named node. An error that comes out of it learns the way from the document's root.
[[nodiscard]] AnyView renderEntry(const NodeDictionary::value_type& entry, Context& context);

template <>
struct Coding<NodeDictionary> {
    static NodeDictionary decode(const Decoder& decoder);
    static void encode(const NodeDictionary& nodes, JSONWriter& writer);
};

}  // namespace tavrin
