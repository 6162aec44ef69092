// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

#include "tavrin/platform/ui/font.h"

namespace tavrin::text {

/// The phone's vertical metrics, in parts of the size, whatever font a glyph comes from.
constexpr double ascentOfSize = 0.952148;
constexpr double descentOfSize = 0.241211;
constexpr double lineHeightOfSize = ascentOfSize + descentOfSize;
constexpr double capHeightOfSize = 0.704590;

/// Lengths that differ by less are the same, in points.
constexpr double lengthTolerance = 1e-6;

constexpr double largestSize = 10000;

/// The size that a text is drawn at; 0 draws nothing.
inline double drawnSize(double size) { return std::isfinite(size) && size > 0 ? std::min(size, largestSize) : 0; }

/// A font's leading as it holds: none where it is not finite or negative.
inline double drawnLeading(double leading) {
    return std::isfinite(leading) && leading > 0 ? std::min(leading, largestSize) : 0;
}

/// Up to whole pixels; a hair above a pixel is still that pixel. A scale of nonsense rounds nothing.
inline double roundedUpToPixels(double points, double scale) {
    if (!std::isfinite(scale) || scale <= 0) return points;
    return std::max(0.0, std::ceil(points * scale - lengthTolerance) / scale);
}

/// To the nearest pixel.
inline double roundedToPixels(double points, double scale) {
    return std::isfinite(scale) && scale > 0 ? std::round(points * scale) / scale : points;
}

// What makes the system font as wide as the phone's, in points for each glyph. Fitted to lines measured on the phone.

/// What is added after every glyph: small texts are wider set than large ones, by a curve that is steepest at the
/// size of its middle.
inline double letterSpacing(double size, Font::Weight weight) {
    struct Curve {
        double least, range, middle, steepness;
    };
    constexpr Curve curves[] = {
        {-0.0473, 0.0806, 13.0, 3.75},  // regular
        {-0.0342, 0.0783, 12.5, 3.25},  // semibold
        {-0.0268, 0.0673, 13.5, 2.75},  // bold
    };
    const Curve& curve = curves[static_cast<unsigned>(weight)];
    return size * (curve.least + curve.range / (1 + std::exp((size - curve.middle) / curve.steepness)));
}

/// What is taken off a blank: the regular ones of large texts are narrower.
inline double blankNarrowing(double size, Font::Weight weight) {
    constexpr double ofSize = 0.025;
    constexpr double from = 17;
    constexpr double fully = 20;
    return weight == Font::Weight::regular ? ofSize * size * std::clamp((size - from) / (fully - from), 0.0, 1.0) : 0;
}

/// What is taken off a tabular digit.
inline double tabularDigitNarrowing(double size) { return 0.014 * size; }

}  // namespace tavrin::text
