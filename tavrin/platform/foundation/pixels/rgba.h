// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// A colour as it is drawn: gamma-encoded sRGB, not premultiplied, each channel nominally 0…1.
struct RGBA {
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;
    friend bool operator==(const RGBA&, const RGBA&) = default;
};

}  // namespace tavrin
