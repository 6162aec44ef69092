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

#include "tavrin/platform/foundation/budget/meter.h"
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

PixelTarget::PixelTarget(cairo_t* cairo, const PixelRect& window) : surface_(cairo_get_group_target(cairo)) {
    cairo_surface_flush(surface_);
    bytes_ = cairo_image_surface_get_data(surface_);
    if (bytes_ == nullptr) return;
    stride_ = cairo_image_surface_get_stride(surface_);
    double x = 0;
    double y = 0;
    cairo_surface_get_device_offset(surface_, &x, &y);
    left_ = -static_cast<int>(std::lround(x));
    top_ = -static_cast<int>(std::lround(y));
    bounds_ = intersection(window, {left_, top_, left_ + cairo_image_surface_get_width(surface_),
                                    top_ + cairo_image_surface_get_height(surface_)});
}

PixelTarget::~PixelTarget() {
    if (bytes_ != nullptr) cairo_surface_mark_dirty(surface_);
}

std::uint32_t* PixelTarget::pixel(int x, int y) const {
    auto* row = bytes_ + static_cast<std::ptrdiff_t>(y - top_) * stride_;
    return reinterpret_cast<std::uint32_t*>(row) + (x - left_);
}

void PixelTarget::fill(const PixelRect& wanted, const PixelSource& source) const {
    const PixelRect area = intersection(wanted, bounds_);
    if (area.empty()) return;
    const auto width = static_cast<std::size_t>(area.width());
    Meter& meter = Meter::ofThisThread();
    if (const std::optional<std::uint32_t> solid = source.solid()) {
        for (int y = area.y0; y < area.y1; ++y) {
            meter.paint(width);
            if (source.isOpaque())
                std::fill_n(pixel(area.x0, y), width, *solid);
            else
                blendRow(*solid, {pixel(area.x0, y), width});
        }
        return;
    }
    SourceRows rows(source, wanted);
    for (int y = area.y0; y < area.y1; ++y) {
        meter.paint(width);
        const std::uint32_t* const row = rows.row(y) + (area.x0 - wanted.x0);
        if (source.isOpaque())
            std::copy_n(row, width, pixel(area.x0, y));
        else
            blendRow(row, {pixel(area.x0, y), width});
    }
}

void PixelTarget::fill(const Coverage& coverage, const PixelSource& source) const {
    const PixelRect area = intersection(coverage.area(), bounds_);
    if (area.empty()) return;
    const auto width = static_cast<std::size_t>(area.width());
    Meter& meter = Meter::ofThisThread();
    SourceRows rows(source, coverage.area());
    const int left = area.x0 - coverage.area().x0;
    for (int y = area.y0; y < area.y1; ++y) {
        meter.paint(width);
        blendRow(rows.row(y) + left, coverage.row(y) + left, {pixel(area.x0, y), width});
    }
}

Backdrop::Outside::Outside(const Coverage& inside, const PixelRect& bounds) {
    const PixelRect area = intersection(inside.area(), bounds);
    for (int y = area.y0; y < area.y1; ++y) {
        const std::uint8_t* const begin = inside.row(y) + (area.x0 - inside.area().x0);
        const std::uint8_t* const end = begin + area.width();
        const auto isCovered = [](std::uint8_t share) { return share == 0xFF; };
        for (const std::uint8_t* at = begin; at != end;) {
            const std::uint8_t* const first = std::find_if_not(at, end, isCovered);
            at = std::find_if(first, end, isCovered);
            if (first == at) break;
            runs.push_back({area.x0 + static_cast<int>(first - begin), y, static_cast<int>(at - first)});
            shares.insert(shares.end(), first, at);
        }
    }
}

Backdrop::Backdrop(const PixelTarget& target, const Coverage& inside, const Backdrop* around)
    : outside_(std::make_shared<const Outside>(inside, target.bounds())) {
    Pixels pixels;
    pixels.reserve(outside_->shares.size());
    for (const Run& run : outside_->runs) {
        const std::uint32_t* const first = target.pixel(run.x, run.y);
        pixels.insert(pixels.end(), first, first + run.count);
    }
    if (around && *around->outside_ == *outside_) outside_ = around->outside_;
    pixels_ =
        around && *around->pixels_ == pixels ? around->pixels_ : std::make_shared<const Pixels>(std::move(pixels));
}

void Backdrop::restore(const PixelTarget& target) const {
    Meter::ofThisThread().paint(pixels_->size());
    const std::uint8_t* share = outside_->shares.data();
    const std::uint32_t* kept = pixels_->data();
    for (const Run& run : outside_->runs) {
        std::uint32_t* const row = target.pixel(run.x, run.y);
        for (int i = 0; i < run.count; ++i, ++share, ++kept) row[i] = mixPixels(row[i], *kept, *share);
    }
}

}  // namespace tavrin::paint
