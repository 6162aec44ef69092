// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "tavrin/platform/foundation/memory/shared_text.h"
#include "tavrin/platform/ui/color.h"

// Colour strings: `#RRGGBB`, or `#PPRRGGBB` with the opacity in per cent as two decimal digits.

namespace tavrin {

/// The colour that a string stands for; none for no string and for one that is no colour. The "#" may be left out,
/// white space around is ignored, and so is what follows the sixth hexadecimal digit.
[[nodiscard]] std::optional<Color> colorFromHexString(std::optional<std::string_view> hexString);

/// Turns a nine-character string `#AARRGGBB` with a hexadecimal alpha, as models carry it, into one with the opacity in
/// per cent. Any other string stays as it is. Alpha FF gives three digits, and so a string of ten characters.
[[nodiscard]] SharedText convertARGB(const SharedText& value);

/// The colour that is `light` in light and `dark` in dark appearance.
[[nodiscard]] std::optional<Color> dynamicColor(const Color& light, const Color& dark);

}  // namespace tavrin
