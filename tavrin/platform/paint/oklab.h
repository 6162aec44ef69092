// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/foundation/pixels/rgba.h"

namespace tavrin::paint {

/// A colour in Oklab, where equal steps look equal: its lightness, how green or red and how blue or yellow it is, and
/// its opacity.
struct Oklab {
    double lightness = 0;
    double a = 0;
    double b = 0;
    double opacity = 1;
};

/// `color` has all channels within 0…1.
[[nodiscard]] Oklab oklabOf(const RGBA& color);

/// The colour at a share (0…1) of the way between two, each of which counts as much as it is opaque. Where nothing is
/// left of the opacity it is the colour that was nearly gone. Channels are within 0…1.
[[nodiscard]] RGBA mixed(const Oklab& from, const Oklab& to, double share);

}  // namespace tavrin::paint
