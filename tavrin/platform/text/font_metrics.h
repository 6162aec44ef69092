#pragma once

#include <algorithm>
#include <cmath>

namespace tavrin::text {

/// The phone's vertical metrics, in parts of the size, whatever font a glyph comes from.
constexpr double ascentOfSize = 0.952148;
constexpr double descentOfSize = 0.241211;
constexpr double lineHeightOfSize = ascentOfSize + descentOfSize;

/// Lengths that differ by less are the same, in points.
constexpr double lengthTolerance = 1e-6;

constexpr double largestSize = 10000;

/// The size that a text is drawn at; 0 draws nothing.
inline double drawnSize(double size) { return std::isfinite(size) && size > 0 ? std::min(size, largestSize) : 0; }

/// What is added to each character's advance, in points: small texts are wider set than large ones.
inline double tracking(double size) { return (-0.0223 + 0.185 * std::exp(-0.1745 * size)) * size; }

}  // namespace tavrin::text
