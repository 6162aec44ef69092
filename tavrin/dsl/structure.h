// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/values/alignment_dsl.h"

// The nodes that give a document its structure: stacks, placeholders and references.

namespace tavrin {

/// What authors should know of a stack's "spacing" and "children".
inline constexpr Note spacingNote{
    .text = "The room between neighbours.",
    .unit = Unit::points,
    .absent = "what suits the neighbours: 8 between shapes, less beside texts, none beside a spacer",
    .example = "4"};
inline constexpr Note childrenNote{.text = "The nodes inside, in their order.", .defaultValue = "[]"};

/// Children from top to bottom.
struct VStackNode {
    static constexpr NodeType type = NodeType::vstack;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Places its children one below the other.";

    LosslessDSLValue<std::optional<float>> spacing = {};
    LosslessDSLValue<std::optional<HorizontalAlignmentDSL>> alignment = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    DSLValueWithDefault<std::vector<Node>> children = {};

    static constexpr Fields fields{
        Field{"spacing", &VStackNode::spacing, spacingNote},
        Field{"alignment", &VStackNode::alignment,
              Note{.text = "Where children stand that are narrower than the widest.", .defaultValue = R"("center")"}},
        Field{"modifiers", &VStackNode::modifiers, modifiersNote},
        Field{"children", &VStackNode::children, childrenNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Children from leading to trailing.
struct HStackNode {
    static constexpr NodeType type = NodeType::hstack;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Places its children side by side, from the leading to the trailing edge.";

    LosslessDSLValue<std::optional<float>> spacing = {};
    LosslessDSLValue<std::optional<VerticalAlignmentDSL>> alignment = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    DSLValueWithDefault<std::vector<Node>> children = {};

    static constexpr Fields fields{
        Field{"spacing", &HStackNode::spacing, spacingNote},
        Field{"alignment", &HStackNode::alignment,
              Note{.text = "Where children stand that are lower than the highest.", .defaultValue = R"("center")"}},
        Field{"modifiers", &HStackNode::modifiers, modifiersNote},
        Field{"children", &HStackNode::children, childrenNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Children on top of each other.
struct ZStackNode {
    static constexpr NodeType type = NodeType::zstack;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Places its children on top of each other, the last one in front.";

    LosslessDSLValue<std::optional<AlignmentDSL>> alignment = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    DSLValueWithDefault<std::vector<Node>> children = {};

    static constexpr Fields fields{
        Field{"alignment", &ZStackNode::alignment,
              Note{.text = "The point of the children that lies in one place.", .defaultValue = R"("center")"}},
        Field{"modifiers", &ZStackNode::modifiers, modifiersNote},
        Field{"children", &ZStackNode::children, childrenNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Room that takes what is left over.
struct SpacerNode {
    static constexpr NodeType type = NodeType::spacer;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Takes the room that its stack has left, and so pushes neighbours apart.";

    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"modifiers", &SpacerNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Nothing.
struct EmptyViewNode {
    static constexpr NodeType type = NodeType::emptyView;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws nothing and takes no room, whatever its modifiers.";

    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"modifiers", &EmptyViewNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Another named node of the document, drawn in this one's place with its own modifiers; the reference's are not
/// applied.
struct RefNode {
    static constexpr NodeType type = NodeType::node;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws another named node of the document in its place.";

    DSLValue<std::string> name = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{
        Field{"name", &RefNode::name,
              Note{.text = "The name of the node to draw, any but `main`.", .example = R"("row")"}},
        Field{"modifiers", &RefNode::modifiers,
              Note{.text = "Read, but not applied: the named node brings its own.", .defaultValue = "[]"}}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
