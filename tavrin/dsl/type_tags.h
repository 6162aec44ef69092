// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/values/text_conversion.h"

namespace tavrin {

/// The "type" of a node.
enum class NodeType : unsigned char {
    vstack,
    hstack,
    zstack,
    spacer,
    text,
    color,
    circle,
    rectangle,
    roundedRectangle,
    webImage,
    capsule,
    link,
    emptyView,
    node,
    progressView,
    timer,
};

template <>
struct Keywords<NodeType> : NamedKeywords<NodeType> {
    static constexpr std::string_view typeName = "node type";
};

/// The "type" of a modifier. The last three are reserved for later versions of the language.
enum class ModifierType : unsigned char {
    frame,
    foregroundColor,
    border,
    background,
    aspectRatio,
    clipShape,
    clipped,
    overlay,
    offset,
    widgetURL,
    padding,
    lineLimit,
    cornerRadius,
    opacity,
    zIndex,
    clockHandRotationEffect,
    scaleEffect,
    rotationEffect,
    animation,
    transition,
    contentTransition,
};

template <>
struct Keywords<ModifierType> : NamedKeywords<ModifierType> {
    static constexpr std::string_view typeName = "modifier type";
};

}  // namespace tavrin
