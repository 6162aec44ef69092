// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/dsl/dsl_version.h"
#include "tavrin/values/text_conversion.h"

namespace tavrin {

template <>
struct Keywords<DSLVersion> {
    static constexpr std::string_view typeName = "document version";
    static constexpr auto raw = EnumeratorTable<DSLVersion, std::string_view>{
        {{DSLVersion::v1, "1.0"},
         {DSLVersion::v1_1, "1.1"},
         {DSLVersion::v1_2, "1.2"}}}.values();
    static constexpr DSLVersion defaultCase = DSLVersion::v1;
};

/// Versions are ordered by their raw values.
[[nodiscard]] constexpr bool operator<(DSLVersion a, DSLVersion b) { return rawValue(a) < rawValue(b); }

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
