// SPDX-License-Identifier: MIT
#include "tavrin/nodes/shape_nodes.h"

namespace tavrin {
namespace {

RoundedCornerStyle styleOf(const LosslessDSLValue<std::optional<RoundedCornerStyleDSL>>& style) {
    return namesake<RoundedCornerStyle>(style.wrappedValue().value_or(Keywords<RoundedCornerStyleDSL>::defaultCase));
}

/// The plain colour that the colour node of a key draws; gray where it draws anything else.
Color colorOf(std::string_view key, const ColorNode& node, Context& context) {
    return within(key, [&] { return plainColor(node, context); }).value_or(Color::gray);
}

/// Strokes or fills a bare shape as its node says; stroking leaves the fill out.
template <ShapeNode NodeRecord, class BareShape>
AnyView handleStrokeAndFill(const BareShape& view, const NodeRecord& node, Context& context) {
    constexpr float defaultLineWidth = 1;
    if (node.stroke.wrappedValue() == true) {
        const std::optional<ColorNode>& color = node.strokeColor.wrappedValue;
        return StrokedShape{.shape = view,
                            .stroke = color ? colorOf(keyOf<&NodeRecord::strokeColor>, *color, context) : Color::gray,
                            .lineWidth = node.lineWidth.wrappedValue().value_or(defaultLineWidth)};
    }
    if (const std::optional<ColorNode>& color = node.fillColor.wrappedValue)
        return FilledShape{.shape = view, .fill = colorOf(keyOf<&NodeRecord::fillColor>, *color, context)};
    return view;
}

template <ShapeNode NodeRecord, class BareShape>
AnyView renderShape(const BareShape& view, const NodeRecord& node, Context& context) {
    return applyModifiers(node, handleStrokeAndFill(view, node, context), context);
}

}  // namespace

AnyView CircleNode::render(Context& context) const { return renderShape(Circle{}, *this, context); }

AnyView RectangleNode::render(Context& context) const { return renderShape(Rectangle{}, *this, context); }

AnyView RoundedRectangleNode::render(Context& context) const {
    const RoundedRectangle shape{.cornerRadius = double{cornerRadius.wrappedValue()}, .style = styleOf(style)};
    return renderShape(shape, *this, context);
}

AnyView CapsuleNode::render(Context& context) const {
    return renderShape(Capsule{.style = styleOf(style)}, *this, context);
}

}  // namespace tavrin
