// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tavrin {

/// The closed set of primitive views; layout and painting each know all of them. Any other view is `composed`: it has
/// a body that is evaluated when the tree is laid out.
enum class ViewKind : unsigned char {
    emptyView,
    spacer,
    text,
    image,
    color,
    linearGradient,
    circle,
    rectangle,
    roundedRectangle,
    capsule,
    trimmedShape,
    filledShape,
    strokedShape,
    vstack,
    hstack,
    zstack,
    geometryReader,
    link,
    fixedFrame,
    flexibleFrame,
    padding,
    insetPadding,
    offset,
    scaleEffect,
    rotationEffect,
    rotation3DEffect,
    clockHandRotationEffect,
    aspectRatio,
    lineLimit,
    zIndex,
    foregroundColor,
    background,
    overlay,
    border,
    clipShape,
    clipped,
    cornerRadius,
    opacity,
    widgetURL,
    composed,
};

}  // namespace tavrin
