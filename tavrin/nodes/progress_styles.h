// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "tavrin/nodes/progress_node.h"
#include "tavrin/platform/ui/progress_view.h"

// The two looks of a progress view. A colour is a view: a plain colour or a gradient counts, instead of anything else
// the progress is blue and its track gray.

namespace tavrin {

/// A ring that fills from twelve o'clock, clockwise or, flipped, the other way around. The attachment rides on its end.
struct CircularProgressViewStyle {
    float lineWidth = 0;
    ProgressNode::LineCap lineCap = ProgressNode::LineCap::round;
    std::optional<AnyView> attachment = std::nullopt;
    std::optional<AnyView> color = std::nullopt;
    std::optional<AnyView> background = std::nullopt;
    bool flip = false;

    [[nodiscard]] AnyView makeBody(const ProgressViewStyleConfiguration& configuration) const;
    void write(ViewWriter& writer) const;
    void forEachInside(const std::function<void(const AnyView&)>& visit) const;
};

/// A bar, as high as the line is wide and in the middle of its room, that fills from the leading or, flipped, from the
/// trailing end. The attachment lies over it, above or below.
struct LinearProgressViewStyle {
    float lineWidth = 0;
    ProgressNode::LineCap lineCap = ProgressNode::LineCap::round;
    std::optional<float> lineCornerRadius = std::nullopt;
    std::optional<AnyView> attachment = std::nullopt;
    ProgressAttachment::Position attachmentPosition = ProgressAttachment::Position::center;
    std::optional<AnyView> color = std::nullopt;
    std::optional<AnyView> background = std::nullopt;
    bool flip = false;

    [[nodiscard]] AnyView makeBody(const ProgressViewStyleConfiguration& configuration) const;
    void write(ViewWriter& writer) const;
    void forEachInside(const std::function<void(const AnyView&)>& visit) const;
};

}  // namespace tavrin
