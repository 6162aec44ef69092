#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "tavrin/nodes/color_node.h"

namespace tavrin {

enum class ProgressStyle : unsigned char { circular, linear };

template <>
struct Keywords<ProgressStyle> {
    static constexpr std::string_view typeName = "ProgressNode.Style";
    static constexpr std::array<std::string_view, 2> raw{"circular", "linear"};
    static constexpr ProgressStyle defaultCase = ProgressStyle::linear;
};

enum class ProgressLineCap : unsigned char { butt, round };

template <>
struct Keywords<ProgressLineCap> {
    static constexpr std::string_view typeName = "ProgressNode.LineCap";
    static constexpr std::array<std::string_view, 2> raw{"butt", "round"};
    static constexpr ProgressLineCap defaultCase = ProgressLineCap::round;
};

enum class ProgressAttachmentPosition : unsigned char { center, top, bottom };

template <>
struct Keywords<ProgressAttachmentPosition> {
    static constexpr std::string_view typeName = "ProgressAttachment.Position";
    static constexpr std::array<std::string_view, 3> raw{"center", "top", "bottom"};
    static constexpr ProgressAttachmentPosition defaultCase = ProgressAttachmentPosition::center;
};

/// A node that rides on a ring at the end of the arc, or lies over, above or below a bar.
struct ProgressAttachment {
    using Position = ProgressAttachmentPosition;

    LosslessDSLValue<Position> position = {};
    DSLValue<Node> view = {};

    static constexpr std::tuple fields{Field{"position", &ProgressAttachment::position},
                                       Field{"view", &ProgressAttachment::view}};
};

/// How much of something is done, 0…1, as a ring or a bar. Lengths are in points.
struct ProgressNode {
    static constexpr NodeType type = NodeType::progressView;
    static constexpr DSLVersion version = DSLVersion::v1_1;

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

    static constexpr std::tuple fields{Field{"modifiers", &ProgressNode::modifiers},
                                       Field{"style", &ProgressNode::style},
                                       Field{"value", &ProgressNode::value},
                                       Field{"color", &ProgressNode::color},
                                       Field{"background", &ProgressNode::background},
                                       Field{"lineWidth", &ProgressNode::lineWidth},
                                       Field{"lineCornerRadius", &ProgressNode::lineCornerRadius},
                                       Field{"lineCap", &ProgressNode::lineCap},
                                       Field{"flip", &ProgressNode::flip},
                                       Field{"attachment", &ProgressNode::attachment}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
