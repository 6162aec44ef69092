// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/platform/foundation/pixels/rgba.h"
#include "tavrin/platform/ui/view_kind.h"

namespace tavrin {

/// Whether the device shows its light or its dark appearance.
enum class Appearance : unsigned char { light, dark };

/// A colour, as a value and as a view that fills its room.
///
/// A colour that depends on the appearance keeps both forms and chooses when it is drawn.
class Color {
public:
    static constexpr ViewKind kind = ViewKind::color;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "Color";

    enum class Source : unsigned char {
        rgb,      ///< one fixed sRGB colour
        dynamic,  ///< a light and a dark colour
        blue,
        gray,
        white,
        primary,  ///< the foreground: black in light, white in dark appearance
    };

    /// A fixed sRGB colour; channels and opacity are kept as given, also outside 0…1.
    static constexpr Color rgb(double r, double g, double b, double opacity = 1) {
        const RGBA fixed{r, g, b, opacity};
        return {Source::rgb, fixed, fixed};
    }
    /// A colour that is `light` in light and `dark` in dark appearance.
    static constexpr Color dynamic(RGBA light, RGBA dark) { return {Source::dynamic, light, dark}; }

    static const Color blue;
    static const Color gray;
    static const Color white;
    static const Color primary;

    [[nodiscard]] constexpr Source source() const { return source_; }
    /// What is drawn in the given appearance.
    [[nodiscard]] constexpr const RGBA& resolved(Appearance appearance) const {
        return appearance == Appearance::dark ? dark_ : light_;
    }

    friend bool operator==(const Color&, const Color&) = default;

private:
    constexpr Color(Source source, RGBA light, RGBA dark) : source_(source), light_(light), dark_(dark) {}

    Source source_;
    RGBA light_;
    RGBA dark_;
};

inline constexpr Color Color::blue{Source::blue, {0, 0x88 / 255.0, 1, 1}, {0, 0x91 / 255.0, 1, 1}};
inline constexpr Color Color::gray{
    Source::gray, {0x8E / 255.0, 0x8E / 255.0, 0x93 / 255.0, 1}, {0x8E / 255.0, 0x8E / 255.0, 0x93 / 255.0, 1}};
inline constexpr Color Color::white{Source::white, {1, 1, 1, 1}, {1, 1, 1, 1}};
inline constexpr Color Color::primary{Source::primary, {0, 0, 0, 1}, {1, 1, 1, 1}};

}  // namespace tavrin
