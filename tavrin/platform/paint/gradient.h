// SPDX-License-Identifier: MIT
#pragma once

#include <variant>
#include <vector>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/pixels/rgba.h"

namespace tavrin::paint {

/// Evenly spaced colours along the line from `start` to `end` (points of the canvas), padded at both ends and
/// interpolated in Oklab, premultiplied by opacity; a document comes within 2 of 255 of that. Without colours it draws
/// nothing; without length it is its last colour.
struct Gradient {
    std::vector<RGBA> colors;
    Point start;
    Point end;
};

/// What an area is covered with. Channels and opacity are clamped to 0…1; a colour with a NaN draws nothing, and so
/// does a gradient with one anywhere.
using Paint = std::variant<RGBA, Gradient>;

}  // namespace tavrin::paint
