// SPDX-License-Identifier: MIT
#include "tavrin/nodes/progress_styles.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/values/mirror_key_path.h"

namespace tavrin {
namespace {

constexpr Axis3D verticalAxis{0, 1, 0};

double flipAngle(bool flip) { return flip ? std::numbers::pi : 0; }

/// A length as it can be used: none where it is negative or not finite.
double usable(double length) { return std::isfinite(length) ? std::max(0.0, length) : 0; }

ShapeStyle styleOf(const std::optional<AnyView>& color, const Color& otherwise) {
    if (!color) return otherwise;
    const AnyView& view = mirrorKeyPath("storage.view", *color);
    if (const auto* gradient = view.as<LinearGradient>()) return *gradient;
    if (const auto* plain = view.as<Color>()) return *plain;
    return otherwise;
}

AnyView ring(const CircularProgressViewStyle& style, double fraction, Size room) {
    const double width = style.lineWidth;
    const double inset = width * 0.5;
    const double radius = std::min(room.width - width, room.height - width) / 2;
    const double angle = fraction * 2 * std::numbers::pi * (style.flip ? -1 : 1);
    const auto inside = [inset](AnyView circle) {
        return InsetPadding{.insets = {inset, inset, inset, inset}, .content = std::move(circle)};
    };
    const auto stroked = [&](const Shape& shape, const ShapeStyle& color) {
        return StrokedShape{
            .shape = shape, .stroke = color, .lineWidth = width, .lineCap = namesake<LineCap>(style.lineCap)};
    };
    const AnyView arc = stroked(TrimmedShape{Circle{}, 0, fraction}, styleOf(style.color, Color::blue));
    const AnyView upright = RotationEffect{.angle = -std::numbers::pi / 2, .content = arc};
    const AnyView turned = Rotation3DEffect{.angle = flipAngle(style.flip), .axis = verticalAxis, .content = upright};
    ZStack layers{.children = {inside(stroked(Circle{}, styleOf(style.background, Color::gray))), inside(turned)}};
    if (style.attachment) {
        const double reach = std::isfinite(radius) ? radius : 0;  // where the line is wider than the room, backwards
        layers.children.emplace_back(
            Offset{.x = reach * std::sin(angle), .y = -reach * std::cos(angle), .content = *style.attachment});
    }
    return layers;
}

AnyView bar(const LinearProgressViewStyle& style, double fraction, Size room) {
    const double height = usable(style.lineWidth);
    const double whole = usable(room.width);
    const double filled = whole * fraction;
    const double shift = (whole - filled) * (style.flip ? 0.5 : -0.5);
    const double ownRadius = style.lineCap == ProgressNode::LineCap::round ? height / 2 : 0;
    const RoundedRectangle shape{style.lineCornerRadius ? double{*style.lineCornerRadius} : ownRadius};
    const auto piece = [&](double width, const ShapeStyle& color) {
        return FixedFrame{.width = width, .height = height, .content = FilledShape{.shape = shape, .fill = color}};
    };
    const AnyView turned = Rotation3DEffect{.angle = flipAngle(style.flip),
                                            .axis = verticalAxis,
                                            .content = piece(filled, styleOf(style.color, Color::blue))};
    ZStack layers{
        .children = {piece(whole, styleOf(style.background, Color::gray)), Offset{.x = shift, .content = turned}}};
    AnyView content;
    if (!style.attachment) {
        content = std::move(layers);
    } else if (style.attachmentPosition == ProgressAttachment::Position::center) {
        layers.children.push_back(*style.attachment);
        content = std::move(layers);
    } else {
        ViewList column{*style.attachment, std::move(layers)};
        if (style.attachmentPosition == ProgressAttachment::Position::bottom) std::swap(column[0], column[1]);
        content = VStack{.spacing = 0, .children = std::move(column)};
    }
    return FixedFrame{.width = room.width, .height = room.height, .content = std::move(content)};
}

/// What a style prints; the keys of both stand in one order.
template <class Style>
void writeStyle(std::string_view name, const Style& style, ViewWriter& writer) {
    JSONWriter& json = writer.json();
    json.beginObject().key(name).beginObject();
    json.key("lineWidth").value(style.lineWidth).key("lineCap").value(rawValue(style.lineCap));
    if constexpr (requires { style.lineCornerRadius; }) json.key("lineCornerRadius").value(style.lineCornerRadius);
    json.key("attachment");
    writer.part(style.attachment);
    if constexpr (requires { style.attachmentPosition; })
        json.key("attachmentPosition").value(rawValue(style.attachmentPosition));
    json.key("color");
    writer.viewValue(style.color);
    json.key("background");
    writer.viewValue(style.background);
    json.key("flip").value(style.flip).endObject().endObject();
}

template <class Style>
void forEachView(const Style& style, const std::function<void(const AnyView&)>& visit) {
    for (const auto* view : {&style.attachment, &style.color, &style.background})
        if (*view) visit(**view);
}

}  // namespace

AnyView CircularProgressViewStyle::makeBody(const ProgressViewStyleConfiguration& configuration) const {
    return GeometryReader{[style = *this, fraction = configuration.fractionCompleted.value_or(0)](
                              const GeometryProxy& geometry) { return ring(style, fraction, geometry.size); }};
}

void CircularProgressViewStyle::write(ViewWriter& writer) const { writeStyle("circular", *this, writer); }

void CircularProgressViewStyle::forEachInside(const std::function<void(const AnyView&)>& visit) const {
    forEachView(*this, visit);
}

AnyView LinearProgressViewStyle::makeBody(const ProgressViewStyleConfiguration& configuration) const {
    return GeometryReader{[style = *this, fraction = configuration.fractionCompleted.value_or(0)](
                              const GeometryProxy& geometry) { return bar(style, fraction, geometry.size); }};
}

void LinearProgressViewStyle::write(ViewWriter& writer) const { writeStyle("linear", *this, writer); }

void LinearProgressViewStyle::forEachInside(const std::function<void(const AnyView&)>& visit) const {
    forEachView(*this, visit);
}

}  // namespace tavrin
