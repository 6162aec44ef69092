// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tavrin/platform/foundation/pixels/rgba.h"
#include "tavrin/platform/paint/gradient.h"

typedef struct _cairo cairo_t;

namespace tavrin::paint {

/// What a gradient on a raster may differ from its colours by (of 1): less than can come to be another level.
inline constexpr double rasterTolerance = 0.25 / 255;

/// A colour with channels and opacity within 0…1; nothing when one of them is NaN.
[[nodiscard]] std::optional<RGBA> clamped(const RGBA& color);

/// The premultiplied pixel of a clamped colour, each channel rounded.
[[nodiscard]] std::uint32_t pixelOf(const RGBA& clampedColor);

/// A gradient's colours, each clamped, or the one colour that it comes down to; empty when it draws nothing.
[[nodiscard]] std::vector<RGBA> clampedColors(const Gradient& gradient);

/// Makes the paint Cairo's source; of so many colours, none when it draws nothing. On a raster colours are those of
/// `pixelOf`.
[[nodiscard]] std::size_t setSource(cairo_t* cairo, const Paint& paint, bool raster);

}  // namespace tavrin::paint
