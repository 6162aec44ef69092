// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/geometry.h"

namespace tavrin {

/// The kinds of room that a home or lock screen has for a widget.
enum class WidgetFamily : unsigned char {
    systemSmall,
    systemMedium,
    systemLarge,
    systemExtraLarge,
    accessoryCircular,
    accessoryRectangular,
    accessoryInline,
};

inline constexpr const auto& widgetFamilyNames = enumeratorNames<WidgetFamily>;

/// The family of that name.
[[nodiscard]] std::optional<WidgetFamily> widgetFamily(std::string_view name);

/// Whether links can be tapped in widgets of a family. Where they cannot, a tap anywhere opens the widget's own URL.
[[nodiscard]] constexpr bool linksCanBeTapped(WidgetFamily family) {
    return family == WidgetFamily::systemMedium || family == WidgetFamily::systemLarge ||
           family == WidgetFamily::systemExtraLarge;
}

/// The size in points that a family has on a screen of `screen` points; none for a screen that is not known or a family
/// that it has not.
[[nodiscard]] std::optional<Size> widgetSize(WidgetFamily family, Size screen);

/// The room that a widget is drawn in: a family's, or any other.
struct WidgetRoom {
    /// What messages call it: the family's name, or a size.
    std::string name = "systemMedium";
    /// In points.
    Size size = {338, 158};
    bool linksCanBeTapped = true;
};

/// The room of a family on a screen, as `widgetSize` and `linksCanBeTapped` tell.
[[nodiscard]] std::optional<WidgetRoom> widgetRoom(WidgetFamily family, Size screen);

/// The screens whose widget sizes are known: phones, then tablets, the largest first.
[[nodiscard]] std::span<const Size> knownScreens();

/// The radius, in points, of the continuous corners that a home screen gives its widgets.
inline constexpr double widgetCornerRadius = 21.6;

}  // namespace tavrin
