// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/color_source.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <cairo.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/paint/gradient_stops.h"

namespace tavrin::paint {
namespace {

/// What viewers may differ from a gradient's colours by, less what they round. A raster's own gradients are closer.
constexpr double documentTolerance = 1.0 / 255;

void setColor(cairo_t* cairo, const RGBA& color, bool raster) {
    if (!raster) return cairo_set_source_rgba(cairo, color.red, color.green, color.blue, color.opacity);
    // Straight channels that Cairo multiplies back to exactly this pixel.
    const std::uint32_t pixel = pixelOf(color);
    const double alpha = pixel >> 24;
    const auto channel = [&](unsigned shift) { return alpha > 0 ? (pixel >> shift & 0xFF) / alpha : 0; };
    cairo_set_source_rgba(cairo, channel(16), channel(8), channel(0), alpha / 255);
}

std::size_t setGradient(cairo_t* cairo, const Gradient& gradient, const std::vector<RGBA>& colors, bool raster) {
    const std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)> pattern(
        cairo_pattern_create_linear(gradient.start.x, gradient.start.y, gradient.end.x, gradient.end.y),
        &cairo_pattern_destroy);
    const std::vector<GradientStop> stops = gradientStops(colors, raster ? rasterTolerance : documentTolerance);
    for (const auto& [place, color] : stops)
        cairo_pattern_add_color_stop_rgba(pattern.get(), place, color.red, color.green, color.blue, color.opacity);
    cairo_set_source(cairo, pattern.get());
    return stops.size();
}

}  // namespace

std::optional<RGBA> clamped(const RGBA& color) {
    const auto& [red, green, blue, opacity] = color;
    if (std::isnan(red) || std::isnan(green) || std::isnan(blue) || std::isnan(opacity)) return std::nullopt;
    const auto unit = [](double value) { return std::clamp(value, 0.0, 1.0); };
    return RGBA{unit(red), unit(green), unit(blue), unit(opacity)};
}

std::uint32_t pixelOf(const RGBA& clampedColor) {
    const auto byte = [](double value) { return static_cast<std::uint32_t>(value * 255 + 0.5); };
    // A channel is never above its pixel's opacity.
    const std::uint32_t alpha = byte(clampedColor.opacity);
    const auto channel = [&](double value) { return std::min(byte(value * clampedColor.opacity), alpha); };
    return packPixel(alpha, channel(clampedColor.red), channel(clampedColor.green), channel(clampedColor.blue));
}

std::vector<RGBA> clampedColors(const Gradient& gradient) {
    const auto& [colors, start, end] = gradient;
    if (!std::isfinite(start.x) || !std::isfinite(start.y) || !std::isfinite(end.x) || !std::isfinite(end.y)) return {};
    constexpr std::size_t colorsInStep = 4;
    Meter::ofThisThread().step(colors.size() / colorsInStep);
    std::vector<RGBA> result;
    result.reserve(colors.size());
    for (const RGBA& color : colors) {
        const std::optional<RGBA> usable = clamped(color);
        if (!usable) return {};
        result.push_back(*usable);
    }
    if (start == end && !result.empty()) result.erase(result.begin(), result.end() - 1);
    return result;
}

std::size_t setSource(cairo_t* cairo, const Paint& paint, bool raster) {
    if (const auto* color = std::get_if<RGBA>(&paint)) {
        const std::optional<RGBA> usable = clamped(*color);
        if (!usable || usable->opacity == 0) return 0;
        setColor(cairo, *usable, raster);
        return 1;
    }
    const auto& gradient = std::get<Gradient>(paint);
    const std::vector<RGBA> colors = clampedColors(gradient);
    if (colors.size() > 1) return setGradient(cairo, gradient, colors, raster);
    if (!colors.empty()) setColor(cairo, colors.front(), raster);
    return colors.size();
}

}  // namespace tavrin::paint
