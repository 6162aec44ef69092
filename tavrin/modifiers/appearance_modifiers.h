// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/modifier.h"
#include "tavrin/dsl/node.h"
#include "tavrin/nodes/color_node.h"

// The modifiers that change how a view looks where it lies.

namespace tavrin {

/// The colour of texts and bare shapes inside.
struct ForegroundColorModifier {
    static constexpr ModifierType type = ModifierType::foregroundColor;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Colours texts and bare shapes inside the view; the innermost such modifier holds.";

    DSLValue<ColorNode> color = {};

    static constexpr Fields fields{
        Field{"color", &ForegroundColorModifier::color, Note{.text = "The colour, which may not be a gradient."}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Another node behind the view, centred, of the view's size.
struct BackgroundModifier {
    static constexpr ModifierType type = ModifierType::background;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Draws another node behind the view, centred and offered the view's size.";

    DSLValue<Node> view = {};

    static constexpr Fields fields{Field{"view", &BackgroundModifier::view, Note{.text = "The node behind."}}};

    [[nodiscard]] AnyView modify(AnyView content, Context& context) const;
};

/// Another node in front of the view, centred, of the view's size.
struct OverlayModifier {
    static constexpr ModifierType type = ModifierType::overlay;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Draws another node in front of the view, centred and offered the view's size.";

    DSLValue<Node> view = {};

    static constexpr Fields fields{Field{"view", &OverlayModifier::view, Note{.text = "The node in front."}}};

    [[nodiscard]] AnyView modify(AnyView content, Context& context) const;
};

/// A line inside the view's bounds: in the colour of `colorNode`, else of the colour string, else white. Never fails.
struct BorderModifier {
    static constexpr ModifierType type = ModifierType::border;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws a line along the view's bounds, on their inside.";

    LosslessDSLValue<SharedText> color = {};
    DSLValue<ColorNode> colorNode = {};
    LosslessDSLValue<float> width = {};

    static constexpr Fields fields{
        Field{"color", &BorderModifier::color,
              Note{.text = "The colour, as in a colour's `value`, where `colorNode` gives no plain one; white where "
                           "this is none either.",
                   .example = R"("#D1D1D6")"}},
        Field{"colorNode", &BorderModifier::colorNode, Note{.text = "The colour of the line."}},
        Field{"width", &BorderModifier::width,
              Note{.text = "The width of the line.", .unit = Unit::points, .minimum = 0, .example = "1"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Cuts the view to a bare circle, capsule or rounded rectangle.
struct ClipShapeModifier {
    static constexpr ModifierType type = ModifierType::clipShape;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Cuts the view to a shape of its size.";

    DSLValue<Node> view = {};

    static constexpr Fields fields{
        Field{"view", &ClipShapeModifier::view,
              Note{.text = "A circle, capsule or rounded rectangle that has no colour, outline or modifiers."}}};

    [[nodiscard]] AnyView modify(AnyView content, Context& context) const;
};

/// Cuts the view to its bounds, at whole pixels.
struct ClippedModifier {
    static constexpr ModifierType type = ModifierType::clipped;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Cuts the view to its bounds, at whole pixels.";

    static constexpr Fields<> fields{};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Cuts the view to a rectangle with circular corners.
struct CornerRadiusModifier {
    static constexpr ModifierType type = ModifierType::cornerRadius;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Cuts the view to a rectangle with round corners.";

    LosslessDSLValue<float> radius = {};

    static constexpr Fields fields{Field{"radius", &CornerRadiusModifier::radius,
                                         Note{.text = "The radius of the corners, at most half of the shorter side.",
                                              .unit = Unit::points,
                                              .minimum = 0,
                                              .example = "12"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Fades the view; the number is passed on as it is.
struct OpacityModifier {
    static constexpr ModifierType type = ModifierType::opacity;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Fades the view.";

    LosslessDSLValue<float> opacity = {};

    static constexpr Fields fields{Field{
        "opacity", &OpacityModifier::opacity,
        Note{.text = "How much of the view can be seen; 0 is nothing.", .minimum = 0, .maximum = 1, .example = "0.5"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
