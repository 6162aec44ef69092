#pragma once

#include <array>
#include <optional>
#include <string_view>

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

inline constexpr std::array<std::string_view, 7> widgetFamilyNames{
    "systemSmall",       "systemMedium",         "systemLarge",    "systemExtraLarge",
    "accessoryCircular", "accessoryRectangular", "accessoryInline"};

/// The family of that name.
[[nodiscard]] std::optional<WidgetFamily> widgetFamily(std::string_view name);

/// The size in points that a family has on a screen of `screen` points; none for a screen that is not known or a family
/// that it has not.
[[nodiscard]] std::optional<Size> widgetSize(WidgetFamily family, Size screen);

/// The screens whose widget sizes are known.
[[nodiscard]] const std::array<Size, 11>& knownScreens();

/// The radius, in points, of the continuous corners that a home screen gives its widgets.
inline constexpr double widgetCornerRadius = 21.6;

}  // namespace tavrin
