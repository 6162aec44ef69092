// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/pixel_target.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <utility>

#include <cairo.h>

#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::paint {
namespace {

using Row = std::span<std::uint32_t>;

void blendRow(const std::uint32_t* source, Row target) {
    for (std::size_t i = 0; i < target.size(); ++i) target[i] = over(source[i], target[i]);
}

void blendRow(const std::uint32_t* source, const std::uint8_t* coverage, Row target) {
    for (std::size_t i = 0; i < target.size(); ++i) {
        if (coverage[i] == 0) continue;
        const std::uint32_t pixel = coverage[i] == 0xFF ? source[i] : scalePixel(source[i], coverage[i]);
        target[i] = pixel >= 0xFF000000 ? pixel : over(pixel, target[i]);
    }
}

/// One translucent pixel over a row, byte by byte, which compilers vectorise.
void blendRow(std::uint32_t source, Row target) {
    constexpr std::size_t block = 16;
    std::array<std::uint32_t, block> sources;
    sources.fill(source);
    std::array<std::uint8_t, 4 * block> added;
    std::memcpy(added.data(), sources.data(), sizeof sources);
    const std::uint32_t rest = 255 - (source >> 24);

    std::size_t i = 0;
    for (; i + block <= target.size(); i += block) {
        auto* bytes = reinterpret_cast<std::uint8_t*>(target.data() + i);
        for (std::size_t k = 0; k < added.size(); ++k) {
            const auto share = static_cast<std::uint16_t>(bytes[k] * rest + 0x80);
            bytes[k] = static_cast<std::uint8_t>(added[k] + static_cast<std::uint16_t>(share + (share >> 8)) / 256);
        }
    }
    for (; i < target.size(); ++i) target[i] = over(source, target[i]);
}

}  // namespace

PixelTarget::PixelTarget(cairo_t* cairo) : surface_(cairo_get_group_target(cairo)) {
    cairo_surface_flush(surface_);
    bytes_ = cairo_image_surface_get_data(surface_);
    if (bytes_ == nullptr) return;
    stride_ = cairo_image_surface_get_stride(surface_);
    double x = 0;
    double y = 0;
    cairo_surface_get_device_offset(surface_, &x, &y);
    bounds_.x0 = -static_cast<int>(std::lround(x));
    bounds_.y0 = -static_cast<int>(std::lround(y));
    bounds_.x1 = bounds_.x0 + cairo_image_surface_get_width(surface_);
    bounds_.y1 = bounds_.y0 + cairo_image_surface_get_height(surface_);
}

PixelTarget::~PixelTarget() {
    if (bytes_ != nullptr) cairo_surface_mark_dirty(surface_);
}

std::uint32_t* PixelTarget::pixel(int x, int y) const {
    auto* row = bytes_ + static_cast<std::ptrdiff_t>(y - bounds_.y0) * stride_;
    return reinterpret_cast<std::uint32_t*>(row) + (x - bounds_.x0);
}

void PixelTarget::fill(const PixelRect& wanted, const PixelSource& source) const {
    const PixelRect area = intersection(wanted, bounds_);
    if (area.empty()) return;
    const auto width = static_cast<std::size_t>(area.width());
    if (const std::optional<std::uint32_t> solid = source.solid()) {
        for (int y = area.y0; y < area.y1; ++y) {
            if (source.isOpaque())
                std::fill_n(pixel(area.x0, y), width, *solid);
            else
                blendRow(*solid, {pixel(area.x0, y), width});
        }
        return;
    }
    SourceRows rows(source, area);
    for (int y = area.y0; y < area.y1; ++y) {
        if (source.isOpaque())
            std::copy_n(rows.row(y), width, pixel(area.x0, y));
        else
            blendRow(rows.row(y), {pixel(area.x0, y), width});
    }
}

void PixelTarget::fill(const Coverage& coverage, const PixelSource& source) const {
    const PixelRect area = intersection(coverage.area(), bounds_);
    if (area.empty()) return;
    const auto width = static_cast<std::size_t>(area.width());
    SourceRows rows(source, area);
    for (int y = area.y0; y < area.y1; ++y)
        blendRow(rows.row(y), coverage.row(y) + (area.x0 - coverage.area().x0), {pixel(area.x0, y), width});
}

Backdrop::Backdrop(const PixelTarget& target, Coverage inside) : inside_(std::move(inside)) {
    const PixelRect& area = inside_.area();
    pixels_.reserve(static_cast<std::size_t>(area.width()) * static_cast<std::size_t>(area.height()));
    for (int y = area.y0; y < area.y1; ++y) {
        const std::uint32_t* row = target.pixel(area.x0, y);
        pixels_.insert(pixels_.end(), row, row + area.width());
    }
}

void Backdrop::restore(const PixelTarget& target) const {
    const PixelRect& area = inside_.area();
    const std::uint32_t* kept = pixels_.data();
    for (int y = area.y0; y < area.y1; ++y) {
        std::uint32_t* row = target.pixel(area.x0, y);
        const std::uint8_t* inside = inside_.row(y);
        for (int i = 0; i < area.width(); ++i, ++kept)
            if (inside[i] != 0xFF) row[i] = mixPixels(row[i], *kept, inside[i]);
    }
}

}  // namespace tavrin::paint
