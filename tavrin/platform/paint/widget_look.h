// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/ui/color.h"

namespace tavrin {

/// What lies behind a widget.
struct WidgetBackground {
    enum class Kind : unsigned char {
        automatic,  ///< the platform's own: white in light, nearly black in dark appearance
        none,       ///< nothing: transparent
        color,
    };
    Kind kind = Kind::automatic;
    Color color = Color::primary;

    friend bool operator==(const WidgetBackground&, const WidgetBackground&) = default;
};

namespace paint {

/// What is seen of a widget beside its view.
struct WidgetLook {
    Size size;  ///< in points
    Appearance appearance = Appearance::light;
    WidgetBackground background = {};
    bool rounded = false;  ///< whether the home screen's rounded corners are cut

    friend bool operator==(const WidgetLook&, const WidgetLook&) = default;
};

}  // namespace paint
}  // namespace tavrin
