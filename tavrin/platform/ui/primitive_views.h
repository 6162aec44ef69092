// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

#include "tavrin/platform/ui/any_view.h"
#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

/// Calls `visit` with the primitive view inside `view`; a composed view is the caller's to handle first.
template <class Visit>
decltype(auto) visitPrimitive(const AnyView& view, Visit&& visit) {
    switch (view.kind()) {
        case ViewKind::spacer: return visit(*view.as<Spacer>());
        case ViewKind::text: return visit(*view.as<Text>());
        case ViewKind::image: return visit(*view.as<Image>());
        case ViewKind::color: return visit(*view.as<Color>());
        case ViewKind::linearGradient: return visit(*view.as<LinearGradient>());
        case ViewKind::circle: return visit(*view.as<Circle>());
        case ViewKind::rectangle: return visit(*view.as<Rectangle>());
        case ViewKind::roundedRectangle: return visit(*view.as<RoundedRectangle>());
        case ViewKind::capsule: return visit(*view.as<Capsule>());
        case ViewKind::trimmedShape: return visit(*view.as<TrimmedShape>());
        case ViewKind::filledShape: return visit(*view.as<FilledShape>());
        case ViewKind::strokedShape: return visit(*view.as<StrokedShape>());
        case ViewKind::vstack: return visit(*view.as<VStack>());
        case ViewKind::hstack: return visit(*view.as<HStack>());
        case ViewKind::zstack: return visit(*view.as<ZStack>());
        case ViewKind::geometryReader: return visit(*view.as<GeometryReader>());
        case ViewKind::link: return visit(*view.as<Link>());
        case ViewKind::fixedFrame: return visit(*view.as<FixedFrame>());
        case ViewKind::flexibleFrame: return visit(*view.as<FlexibleFrame>());
        case ViewKind::padding: return visit(*view.as<Padding>());
        case ViewKind::insetPadding: return visit(*view.as<InsetPadding>());
        case ViewKind::offset: return visit(*view.as<Offset>());
        case ViewKind::scaleEffect: return visit(*view.as<ScaleEffect>());
        case ViewKind::rotationEffect: return visit(*view.as<RotationEffect>());
        case ViewKind::rotation3DEffect: return visit(*view.as<Rotation3DEffect>());
        case ViewKind::clockHandRotationEffect: return visit(*view.as<ClockHandRotationEffect>());
        case ViewKind::aspectRatio: return visit(*view.as<AspectRatio>());
        case ViewKind::lineLimit: return visit(*view.as<LineLimit>());
        case ViewKind::zIndex: return visit(*view.as<ZIndex>());
        case ViewKind::foregroundColor: return visit(*view.as<ForegroundColor>());
        case ViewKind::background: return visit(*view.as<Background>());
        case ViewKind::overlay: return visit(*view.as<Overlay>());
        case ViewKind::border: return visit(*view.as<Border>());
        case ViewKind::clipShape: return visit(*view.as<ClipShape>());
        case ViewKind::clipped: return visit(*view.as<Clipped>());
        case ViewKind::cornerRadius: return visit(*view.as<CornerRadius>());
        case ViewKind::opacity: return visit(*view.as<Opacity>());
        case ViewKind::widgetURL: return visit(*view.as<WidgetURL>());
        case ViewKind::emptyView:
        case ViewKind::composed: break;
    }
    return visit(EmptyView{});
}

namespace detail {

template <PrimitiveView... Views>
consteval auto viewTraits() {
    constexpr auto count = static_cast<std::size_t>(ViewKind::composed);
    static_assert(sizeof...(Views) == count, "a primitive view is missing in the list of all");
    std::array<ViewTraits, count + 1> traits;
    ((traits[static_cast<std::size_t>(Views::kind)] = Views::traits), ...);
    traits[count] = {.holds = ViewTraits::Holds::content, .isTransparentToLayout = true};  // a body
    return traits;
}

inline constexpr auto allViewTraits =
    viewTraits<EmptyView, Spacer, Text, Image, Color, LinearGradient, Circle, Rectangle, RoundedRectangle, Capsule,
               TrimmedShape, FilledShape, StrokedShape, VStack, HStack, ZStack, GeometryReader, Link, FixedFrame,
               FlexibleFrame, Padding, InsetPadding, Offset, ScaleEffect, RotationEffect, Rotation3DEffect,
               ClockHandRotationEffect, AspectRatio, LineLimit, ZIndex, ForegroundColor, Background, Overlay, Border,
               ClipShape, Clipped, CornerRadius, Opacity, WidgetURL>();

}  // namespace detail

/// Of primitive and composed views.
[[nodiscard]] constexpr const ViewTraits& traitsOf(ViewKind kind) {
    return detail::allViewTraits[static_cast<std::size_t>(kind)];
}

/// Whether a view type changes one content, and so is printed as a modifier.
template <class V>
concept ModifiedView = requires(const V& view) {
    { view.content } -> std::convertible_to<AnyView>;
}
&&!std::same_as<V, Text>;

}  // namespace tavrin
