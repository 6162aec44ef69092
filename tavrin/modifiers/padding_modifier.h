// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// The edges a document can name.
enum class EdgeDSL : unsigned char { top, bottom, leading, trailing, all };

template <>
struct Keywords<EdgeDSL> : NamedKeywords<EdgeDSL> {
    static constexpr std::string_view typeName = "edge";
    static constexpr EdgeDSL defaultCase = EdgeDSL::all;
};

/// The same inset, in points, at each of some edges: all where none are named, none where the list is empty.
struct PaddingModifier {
    static constexpr ModifierType type = ModifierType::padding;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Leaves room around the view.";

    DSLValue<std::optional<std::vector<EdgeDSL>>> edges = {};
    LosslessDSLValue<float> length = {};

    static constexpr std::tuple fields{
        Field{"edges", &PaddingModifier::edges,
              Note{.text = "The edges that get room; an empty list is none.",
                   .defaultValue = R"(["all"])",
                   .example = R"(["leading", "trailing"])"}},
        Field{"length", &PaddingModifier::length,
              Note{.text = "The room at each of these edges; negative lets the view reach beyond.",
                   .unit = Unit::points,
                   .example = "12"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
