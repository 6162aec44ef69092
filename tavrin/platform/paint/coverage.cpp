// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/coverage.h"

#include <cstdint>
#include <memory>

#include <cairo.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin::paint {

Coverage::Coverage(const PixelRect& area, bool antialiased, const std::function<void(cairo_t*)>& draw) : area_(area) {
    constexpr std::uint64_t stepsOfCall = 100;  // however small the area
    Meter::ofThisThread().step(stepsOfCall);
    Meter::ofThisThread().paint(area.area());
    const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_A8, area.width());
    stride_ = static_cast<std::size_t>(stride);
    bytes_.resize(stride_ * static_cast<std::size_t>(area.height()));
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_for_data(bytes_.data(), CAIRO_FORMAT_A8, area.width(), area.height(), stride),
        &cairo_surface_destroy);
    cairo_surface_set_device_offset(surface.get(), -area.x0, -area.y0);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo(cairo_create(surface.get()), &cairo_destroy);
    if (!antialiased) cairo_set_antialias(cairo.get(), CAIRO_ANTIALIAS_NONE);
    draw(cairo.get());
    cairo_surface_flush(surface.get());
    if (const cairo_status_t status = cairo_status(cairo.get()); status != CAIRO_STATUS_SUCCESS)
        throw TavrinError{"Render", cairo_status_to_string(status)};
}

}  // namespace tavrin::paint
