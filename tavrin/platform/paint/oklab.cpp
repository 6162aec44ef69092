// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/oklab.h"

#include <algorithm>
#include <cmath>

namespace tavrin::paint {
namespace {

/// The light that an sRGB channel stands for, and the other way round.
double decoded(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}
double encoded(double light) {
    const double inGamut = std::clamp(light, 0.0, 1.0);
    return inGamut <= 0.0031308 ? 12.92 * inGamut : 1.055 * std::pow(inGamut, 1 / 2.4) - 0.055;
}

}  // namespace

Oklab oklabOf(const RGBA& color) {
    // 1. From encoded channels to light.
    const double red = decoded(color.red);
    const double green = decoded(color.green);
    const double blue = decoded(color.blue);
    // 2. What the eye's three receptors answer: sums of light, of which the cube root is taken.
    const double l = std::cbrt(0.4122214708 * red + 0.5363325363 * green + 0.0514459929 * blue);
    const double m = std::cbrt(0.2119034982 * red + 0.6806995451 * green + 0.1073969566 * blue);
    const double s = std::cbrt(0.0883024619 * red + 0.2817188376 * green + 0.6299787005 * blue);
    // 3. From the receptors to lightness and the two opposite pairs.
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s, color.opacity};
}

RGBA mixed(const Oklab& from, const Oklab& to, double share) {
    // 1. The opacity goes evenly from one to the other.
    const double opacity = std::lerp(from.opacity, to.opacity, share);
    // 2. Premultiplied by opacity and divided by what comes out, the second one weighs so much.
    const double gone = to.opacity > 0 ? 1 : 0;
    const double weight = opacity > 0 ? share * to.opacity / opacity : gone;
    const double lightness = std::lerp(from.lightness, to.lightness, weight);
    const double a = std::lerp(from.a, to.a, weight);
    const double b = std::lerp(from.b, to.b, weight);
    // 3. Back to the receptors, and to their light.
    const auto cube = [](double x) { return x * x * x; };
    const double l = cube(lightness + 0.3963377774 * a + 0.2158037573 * b);
    const double m = cube(lightness - 0.1055613458 * a - 0.0638541728 * b);
    const double s = cube(lightness - 0.0894841775 * a - 1.2914855480 * b);
    // 4. To the light of the three channels, which is cut where a screen cannot show it, and encoded.
    return {encoded(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
            encoded(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
            encoded(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s), opacity};
}

}  // namespace tavrin::paint
