// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include <cairo.h>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin {

/// A PNG file's pixels, premultiplied as the renderer's are.
inline std::optional<paint::PixelBuffer> decodePng(const std::string& png) {
    struct Reader {
        const std::string& bytes;
        std::size_t at = 0;
    } reader{png};
    const auto read = [](void* closure, unsigned char* data, unsigned int length) {
        auto& from = *static_cast<Reader*>(closure);
        if (from.at + length > from.bytes.size()) return CAIRO_STATUS_READ_ERROR;
        std::memcpy(data, from.bytes.data() + from.at, length);
        from.at += length;
        return CAIRO_STATUS_SUCCESS;
    };
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_from_png_stream(read, &reader), &cairo_surface_destroy);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
    const bool opaque = cairo_image_surface_get_format(surface.get()) == CAIRO_FORMAT_RGB24;
    paint::PixelBuffer pixels(cairo_image_surface_get_width(surface.get()),
                              cairo_image_surface_get_height(surface.get()));
    for (int y = 0; y < pixels.height(); ++y) {
        const unsigned char* row = cairo_image_surface_get_data(surface.get()) +
                                   std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface.get());
        std::memcpy(pixels.row(y), row, static_cast<std::size_t>(pixels.width()) * sizeof(std::uint32_t));
        if (opaque)
            for (int x = 0; x < pixels.width(); ++x) pixels.row(y)[x] |= 0xFF000000U;
    }
    return pixels;
}

}  // namespace tavrin
