// SPDX-License-Identifier: MIT
#pragma once

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

/// What other views a view holds.
enum class ViewHolds : unsigned char {
    nothing,
    content,           ///< one view
    contentAndSecond,  ///< one view, and before it another that is proposed the first one's size
    children,          ///< a list of views; the view is a stack
};

/// What follows from a view's kind, beyond the rules that layout and painting have for it alone. Each primitive view
/// says it in its struct; who asks reads it with `traitsOf` instead of listing kinds.
struct ViewTraits {
    using Holds = ViewHolds;

    Holds holds = Holds::nothing;
    /// Layout leaves it as it is: proposals, answers, edges and priority pass through to its content.
    bool isTransparentToLayout = false;
    /// Its content is drawn moved, scaled or turned.
    bool isEffect = false;
    /// What of its content lies outside a shape is cut off.
    bool clips = false;
    /// Its content is composed by itself before it is drawn.
    bool composes = false;
    /// It draws something beside its content.
    bool drawsBesideContent = false;

    [[nodiscard]] constexpr bool holdsSecond() const { return holds == Holds::contentAndSecond; }
    [[nodiscard]] constexpr bool isStack() const { return holds == Holds::children; }
};

}  // namespace tavrin
