#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/values/alignment_dsl.h"

// The nodes that give a document its structure: stacks, placeholders and references.

namespace tavrin {

/// Children from top to bottom.
struct VStackNode {
    static constexpr NodeType type = NodeType::vstack;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<float>> spacing = {};
    LosslessDSLValue<std::optional<HorizontalAlignmentDSL>> alignment = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    DSLValueWithDefault<std::vector<Node>> children = {};

    static constexpr std::tuple fields{
        Field{"spacing", &VStackNode::spacing}, Field{"alignment", &VStackNode::alignment},
        Field{"modifiers", &VStackNode::modifiers}, Field{"children", &VStackNode::children}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Children from leading to trailing.
struct HStackNode {
    static constexpr NodeType type = NodeType::hstack;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<float>> spacing = {};
    LosslessDSLValue<std::optional<VerticalAlignmentDSL>> alignment = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    DSLValueWithDefault<std::vector<Node>> children = {};

    static constexpr std::tuple fields{
        Field{"spacing", &HStackNode::spacing}, Field{"alignment", &HStackNode::alignment},
        Field{"modifiers", &HStackNode::modifiers}, Field{"children", &HStackNode::children}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Children on top of each other.
struct ZStackNode {
    static constexpr NodeType type = NodeType::zstack;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<AlignmentDSL>> alignment = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    DSLValueWithDefault<std::vector<Node>> children = {};

    static constexpr std::tuple fields{Field{"alignment", &ZStackNode::alignment},
                                       Field{"modifiers", &ZStackNode::modifiers},
                                       Field{"children", &ZStackNode::children}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Room that takes what is left over.
struct SpacerNode {
    static constexpr NodeType type = NodeType::spacer;
    static constexpr DSLVersion version = DSLVersion::v1;

    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"modifiers", &SpacerNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Nothing.
struct EmptyViewNode {
    static constexpr NodeType type = NodeType::emptyView;
    static constexpr DSLVersion version = DSLVersion::v1;

    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"modifiers", &EmptyViewNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// Another named node of the document, drawn in this one's place with its own modifiers; the reference's are not
/// applied.
struct RefNode {
    static constexpr NodeType type = NodeType::node;
    static constexpr DSLVersion version = DSLVersion::v1;

    DSLValue<std::string> name = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"name", &RefNode::name}, Field{"modifiers", &RefNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
