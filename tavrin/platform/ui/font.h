// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// A font as a text asks for it. Sizes are in points; a size that is not positive draws nothing.
struct Font {
    enum class Weight : unsigned char { regular, semibold, bold };
    enum class Family : unsigned char {
        system,                 ///< the system font in its default design
        monospacedDigitSystem,  ///< the system font with digits of one width
    };

    Family family = Family::system;
    double size = 17;
    Weight weight = Weight::regular;
    /// What lies between two lines beyond their height, in points; a font that is asked for by its size has none.
    double leading = 0;

    /// What texts are set in that name no font.
    static constexpr Font body() { return {Family::system, 17, Weight::regular, 1.712891}; }
    /// The system font. A text's own weight replaces `weight`.
    static constexpr Font system(double size, Weight weight = Weight::regular) {
        return {Family::system, size, weight, 0};
    }
    /// The system font with tabular digits.
    static constexpr Font monospacedDigitSystem(double size, Weight weight) {
        return {Family::monospacedDigitSystem, size, weight, 0};
    }

    friend bool operator==(const Font&, const Font&) = default;
};

}  // namespace tavrin
