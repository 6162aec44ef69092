#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "tavrin/nodes/color_node.h"
#include "tavrin/platform/ui/views.h"

// The four shapes. Each draws its outline in one colour, fills it, or stands bare: then it takes the foreground colour,
// and serves as a clip outline. Lengths are in points.

namespace tavrin {

enum class RoundedCornerStyleDSL : unsigned char { circular, continuous };

template <>
struct Keywords<RoundedCornerStyleDSL> {
    static constexpr std::string_view typeName = "RoundedCornerStyleDSL";
    static constexpr std::array<std::string_view, 2> raw{"circular", "continuous"};
    static constexpr RoundedCornerStyleDSL defaultCase = RoundedCornerStyleDSL::circular;
};

struct CircleNode {
    static constexpr NodeType type = NodeType::circle;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{
        Field{"stroke", &CircleNode::stroke}, Field{"strokeColor", &CircleNode::strokeColor},
        Field{"lineWidth", &CircleNode::lineWidth}, Field{"fillColor", &CircleNode::fillColor},
        Field{"modifiers", &CircleNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

struct RectangleNode {
    static constexpr NodeType type = NodeType::rectangle;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{
        Field{"stroke", &RectangleNode::stroke}, Field{"strokeColor", &RectangleNode::strokeColor},
        Field{"lineWidth", &RectangleNode::lineWidth}, Field{"fillColor", &RectangleNode::fillColor},
        Field{"modifiers", &RectangleNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

struct RoundedRectangleNode {
    static constexpr NodeType type = NodeType::roundedRectangle;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<float> cornerRadius = {};
    LosslessDSLValue<std::optional<RoundedCornerStyleDSL>> style = {};
    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"cornerRadius", &RoundedRectangleNode::cornerRadius},
                                       Field{"style", &RoundedRectangleNode::style},
                                       Field{"stroke", &RoundedRectangleNode::stroke},
                                       Field{"strokeColor", &RoundedRectangleNode::strokeColor},
                                       Field{"lineWidth", &RoundedRectangleNode::lineWidth},
                                       Field{"fillColor", &RoundedRectangleNode::fillColor},
                                       Field{"modifiers", &RoundedRectangleNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

struct CapsuleNode {
    static constexpr NodeType type = NodeType::capsule;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<RoundedCornerStyleDSL>> style = {};
    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{Field{"style", &CapsuleNode::style},
                                       Field{"stroke", &CapsuleNode::stroke},
                                       Field{"strokeColor", &CapsuleNode::strokeColor},
                                       Field{"lineWidth", &CapsuleNode::lineWidth},
                                       Field{"fillColor", &CapsuleNode::fillColor},
                                       Field{"modifiers", &CapsuleNode::modifiers}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// What the four have in common.
template <class T>
concept ShapeNode = DSLNodeProtocol<T> && requires(const T& node) {
    node.stroke;
    node.strokeColor;
    node.lineWidth;
    node.fillColor;
};

}  // namespace tavrin
