// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/dsl_version.h"
#include "tavrin/dsl/node_dictionary.h"
#include "tavrin/dsl/type_tags.h"

namespace tavrin {

/// A document: its version and its named nodes, of which "main" is the root of the view.
struct DSLRoot {
    static constexpr std::string_view summary = "A widget document: its version and its named nodes.";

    DSLVersion version = DSLVersion::v1;
    NodeDictionary nodes;

    static constexpr Fields fields{
        Field{"version", &DSLRoot::version,
              Note{.text = "The version of the language that the document is written in; every version is read alike.",
                   .example = R"("1.0")"}},
        Field{"nodes", &DSLRoot::nodes,
              Note{.text = "The nodes by their names: `main` is the widget, the others are drawn where a node of type "
                           "`node` names them.",
                   .example = R"({"main": {"type": "text", "content": "Hello"}})"}}};
    friend bool operator==(const DSLRoot&, const DSLRoot&) = default;
};

}  // namespace tavrin
