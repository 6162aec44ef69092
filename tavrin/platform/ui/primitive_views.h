// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/ui/any_view.h"
#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

namespace detail {

template <PrimitiveView... Views>
struct ViewTypes {
    static_assert(sizeof...(Views) == indexOf(ViewKind::composed), "a primitive view is missing in the list of all");
    static_assert([](std::size_t index = 0) { return ((indexOf(Views::kind) == index++) && ...); }(),
                  "the primitive views stand in the order of their kinds");

    /// Those of a composed view, a body, stand behind all others.
    static constexpr std::array traits{Views::traits...,
                                       ViewTraits{.holds = ViewHolds::content, .isTransparentToLayout = true}};

    template <class Visit>
    static decltype(auto) visit(const AnyView& view, Visit& visit) {
        static constexpr std::array calls{visitOne<Views, Visit>...};
        return calls[indexOf(view.kind())](view, visit);
    }

private:
    template <class View, class Visit>
    static decltype(auto) visitOne(const AnyView& view, Visit& visit) {
        return visit(*view.as<View>());
    }
};

using PrimitiveViews =
    ViewTypes<EmptyView, Spacer, Text, Image, Color, LinearGradient, Circle, Rectangle, RoundedRectangle, Capsule,
              TrimmedShape, FilledShape, StrokedShape, VStack, HStack, ZStack, GeometryReader, Link, FixedFrame,
              FlexibleFrame, Padding, InsetPadding, Offset, ScaleEffect, RotationEffect, Rotation3DEffect,
              ClockHandRotationEffect, AspectRatio, LineLimit, ZIndex, ForegroundColor, Background, Overlay, Border,
              ClipShape, Clipped, CornerRadius, Opacity, WidgetURL>;

}  // namespace detail

/// Calls `visit` with the primitive view inside `view`; a composed view, which is the caller's to handle first, counts
/// as none.
template <class Visit>
decltype(auto) visitPrimitive(const AnyView& view, Visit&& visit) {
    if (view.kind() == ViewKind::composed) return visit(EmptyView{});
    return detail::PrimitiveViews::visit(view, visit);
}

/// Of primitive and composed views.
[[nodiscard]] constexpr const ViewTraits& traitsOf(ViewKind kind) {
    return detail::PrimitiveViews::traits[indexOf(kind)];
}

/// Whether a view type changes one content, and so is printed as a modifier.
template <class V>
concept ModifiedView = requires(const V& view) {
    { view.content } -> std::convertible_to<AnyView>;
}
&&!std::same_as<V, Text>;

}  // namespace tavrin
