// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "tavrin/nodes/color_node.h"

namespace tavrin {

enum class ProgressStyle : unsigned char { circular, linear };

template <>
struct Keywords<ProgressStyle> : NamedKeywords<ProgressStyle> {
    static constexpr std::string_view typeName = "ProgressNode.Style";
    static constexpr ProgressStyle defaultCase = ProgressStyle::linear;
};

enum class ProgressLineCap : unsigned char { butt, round };

template <>
struct Keywords<ProgressLineCap> : NamedKeywords<ProgressLineCap> {
    static constexpr std::string_view typeName = "ProgressNode.LineCap";
    static constexpr ProgressLineCap defaultCase = ProgressLineCap::round;
};

enum class ProgressAttachmentPosition : unsigned char { center, top, bottom };

template <>
struct Keywords<ProgressAttachmentPosition> : NamedKeywords<ProgressAttachmentPosition> {
    static constexpr std::string_view typeName = "ProgressAttachment.Position";
    static constexpr ProgressAttachmentPosition defaultCase = ProgressAttachmentPosition::center;
};

/// A node that rides on a ring at the end of the arc, or lies over, above or below a bar.
struct ProgressAttachment {
    static constexpr std::string_view name = "progressAttachment";
    static constexpr std::string_view summary =
        "A node that rides on the end of a ring's arc, or lies over, above or below a bar.";

    using Position = ProgressAttachmentPosition;

    LosslessDSLValue<Position> position = {};
    DSLValue<Node> view = {};

    static constexpr Fields fields{
        Field{"position", &ProgressAttachment::position,
              Note{.text = "Where the node is at a bar: over it, above it or below it; a ring ignores it.",
                   .example = R"("top")"}},
        Field{"view", &ProgressAttachment::view, Note{.text = "The node that is attached."}}};
};

/// How much of something is done, 0…1, as a ring or a bar. Lengths are in points.
struct ProgressNode {
    static constexpr NodeType type = NodeType::progressView;
    static constexpr DSLVersion version = DSLVersion::v1_1;
    static constexpr std::string_view summary = "Shows how much of something is done, as a ring or a bar.";

    using Style = ProgressStyle;
    using LineCap = ProgressLineCap;

    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    LosslessDSLValue<Style> style = {};
    LosslessDSLValue<float> value = {};
    DSLValue<std::optional<ColorNode>> color = {};
    DSLValue<std::optional<ColorNode>> background = {};
    LosslessDSLValue<float> lineWidth = {};
    LosslessDSLValue<std::optional<float>> lineCornerRadius = {};
    LosslessDSLValue<std::optional<LineCap>> lineCap = {};
    LosslessDSLValue<std::optional<bool>> flip = {};
    DSLValue<std::optional<ProgressAttachment>> attachment = {};

    static constexpr Fields fields{
        Field{"modifiers", &ProgressNode::modifiers, modifiersNote},
        Field{"style", &ProgressNode::style, Note{.text = "A ring or a bar.", .example = R"("circular")"}},
        Field{"value", &ProgressNode::value,
              Note{.text = "The part that is done.", .minimum = 0, .maximum = 1, .example = "0.6"}},
        Field{"color", &ProgressNode::color, Note{.text = "A colour or gradient for what is done.", .absent = "blue"}},
        Field{"background", &ProgressNode::background,
              Note{.text = "A colour or gradient for the whole ring or bar behind it.", .absent = "gray"}},
        Field{"lineWidth", &ProgressNode::lineWidth,
              Note{.text = "The width of the ring's line, the height of the bar.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .example = "6"}},
        Field{"lineCornerRadius", &ProgressNode::lineCornerRadius,
              Note{.text = "The radius of a bar's corners; a ring ignores it.",
                   .unit = Unit::points,
                   .minimum = 0,
                   .absent = "half of `lineWidth` with round ends, else 0",
                   .example = "2"}},
        Field{"lineCap", &ProgressNode::lineCap,
              Note{.text = "Whether the ends are cut off or round.", .defaultValue = R"("round")"}},
        Field{"flip", &ProgressNode::flip,
              Note{.text = "Whether to fill the other way around: counter-clockwise, or from the trailing edge.",
                   .defaultValue = "false"}},
        Field{"attachment", &ProgressNode::attachment,
              Note{.text = "A node that goes along with the progress.", .absent = "nothing is attached"}}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
