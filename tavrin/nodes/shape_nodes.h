// SPDX-License-Identifier: MIT
#pragma once

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
struct Keywords<RoundedCornerStyleDSL> : NamedKeywords<RoundedCornerStyleDSL> {
    static constexpr std::string_view typeName = "RoundedCornerStyleDSL";
    static constexpr RoundedCornerStyleDSL defaultCase = RoundedCornerStyleDSL::circular;
};

// What authors should know of the keys that shapes have in common.
inline constexpr Note strokeNote{.text = "Whether to draw the outline instead of filling the shape.",
                                 .defaultValue = "false"};
inline constexpr Note strokeColorNote{.text = "The colour of the outline; a gradient counts as gray.",
                                      .absent = "gray"};
inline constexpr Note lineWidthNote{.text = "The width of the outline, half of it inside the shape and half outside.",
                                    .unit = Unit::points,
                                    .minimum = 0,
                                    .defaultValue = "1"};
inline constexpr Note fillColorNote{
    .text = "The colour of the inside, unless the outline is drawn; a gradient counts as gray.",
    .absent = "the foreground colour"};
inline constexpr Note cornerStyleNote{.text = "Whether corners are arcs of circles or bend more gradually.",
                                      .defaultValue = R"("circular")",
                                      .example = R"("continuous")"};

struct CircleNode {
    static constexpr NodeType type = NodeType::circle;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws the largest circle that fits its room.";

    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"stroke", &CircleNode::stroke, strokeNote},
                                   Field{"strokeColor", &CircleNode::strokeColor, strokeColorNote},
                                   Field{"lineWidth", &CircleNode::lineWidth, lineWidthNote},
                                   Field{"fillColor", &CircleNode::fillColor, fillColorNote},
                                   Field{"modifiers", &CircleNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

struct RectangleNode {
    static constexpr NodeType type = NodeType::rectangle;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws a rectangle that fills its room.";

    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"stroke", &RectangleNode::stroke, strokeNote},
                                   Field{"strokeColor", &RectangleNode::strokeColor, strokeColorNote},
                                   Field{"lineWidth", &RectangleNode::lineWidth, lineWidthNote},
                                   Field{"fillColor", &RectangleNode::fillColor, fillColorNote},
                                   Field{"modifiers", &RectangleNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

struct RoundedRectangleNode {
    static constexpr NodeType type = NodeType::roundedRectangle;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws a rectangle with round corners that fills its room.";

    LosslessDSLValue<float> cornerRadius = {};
    LosslessDSLValue<std::optional<RoundedCornerStyleDSL>> style = {};
    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"cornerRadius", &RoundedRectangleNode::cornerRadius,
                                         Note{.text = "The radius of the corners, at most half of the shorter side.",
                                              .unit = Unit::points,
                                              .minimum = 0,
                                              .example = "12"}},
                                   Field{"style", &RoundedRectangleNode::style, cornerStyleNote},
                                   Field{"stroke", &RoundedRectangleNode::stroke, strokeNote},
                                   Field{"strokeColor", &RoundedRectangleNode::strokeColor, strokeColorNote},
                                   Field{"lineWidth", &RoundedRectangleNode::lineWidth, lineWidthNote},
                                   Field{"fillColor", &RoundedRectangleNode::fillColor, fillColorNote},
                                   Field{"modifiers", &RoundedRectangleNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

struct CapsuleNode {
    static constexpr NodeType type = NodeType::capsule;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws a rectangle whose shorter sides are half circles.";

    LosslessDSLValue<std::optional<RoundedCornerStyleDSL>> style = {};
    LosslessDSLValue<std::optional<bool>> stroke = {};
    DSLValue<std::optional<ColorNode>> strokeColor = {};
    LosslessDSLValue<std::optional<float>> lineWidth = {};
    DSLValue<std::optional<ColorNode>> fillColor = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"style", &CapsuleNode::style, cornerStyleNote},
                                   Field{"stroke", &CapsuleNode::stroke, strokeNote},
                                   Field{"strokeColor", &CapsuleNode::strokeColor, strokeColorNote},
                                   Field{"lineWidth", &CapsuleNode::lineWidth, lineWidthNote},
                                   Field{"fillColor", &CapsuleNode::fillColor, fillColorNote},
                                   Field{"modifiers", &CapsuleNode::modifiers, modifiersNote}};

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
