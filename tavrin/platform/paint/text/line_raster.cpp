// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/line_raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/memory/handles.h"

namespace tavrin::paint {

void LineRaster::begin(const PixelRect& clip) {
    masks_.trim();
    clip_ = clip;
    extent_ = {clip.x1, clip.y1, clip.x0, clip.y0};
    placed_.clear();
}

void LineRaster::add(const text::Piece& piece, double pixelsPerEm, double scale, Point pen) {
    constexpr std::uint64_t stepsOfGlyph = 20;  // as if its mask had to be rendered
    Meter& meter = Meter::ofThisThread();
    SizedMasks& masks = masks_.sized(piece.font, pixelsPerEm);
    const double reach = 4 * pixelsPerEm;  // no glyph extends farther from its pen
    const double begin = clip_.x0 - reach;
    const double end = clip_.x1 + reach;
    for (const auto& glyph : piece.glyphs) {
        const double x = pen.x + static_cast<double>(glyph.x) * scale;
        const double y = pen.y + static_cast<double>(glyph.y) * scale;
        pen.x += static_cast<double>(glyph.advance) * scale;
        if (x < begin || x > end || std::abs(y) > 1e6) continue;
        meter.step(stepsOfGlyph);
        const auto quarters = static_cast<int>(std::floor(x * phasesOfPixel + 0.5));
        const GlyphMask& mask =
            masks.mask(glyph.id, static_cast<unsigned>(quarters & (phasesOfPixel - 1)), masks_.bytes());
        if (mask.width == 0) continue;
        const int left = (quarters >> 2) + mask.left;
        const int top = static_cast<int>(std::floor(y + 0.5)) + mask.top;
        if (left >= clip_.x1 || top >= clip_.y1 || left + mask.width <= clip_.x0 || top + mask.height <= clip_.y0)
            continue;
        meter.paint(static_cast<std::uint64_t>(mask.width) * static_cast<std::uint64_t>(mask.height));
        placed_.push_back({&mask, left, top});
        extent_.x0 = std::min(extent_.x0, left);
        extent_.y0 = std::min(extent_.y0, top);
        extent_.x1 = std::max(extent_.x1, left + mask.width);
        extent_.y1 = std::max(extent_.y1, top + mask.height);
    }
}

void LineRaster::paint(cairo_t* cairo) {
    const PixelRect box = intersection(extent_, clip_);
    if (placed_.empty() || box.empty()) return;
    const int width = box.width();
    const int height = box.height();
    const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_A8, width);
    if (stride <= 0) return;
    const std::size_t bytes = static_cast<std::size_t>(stride) * static_cast<std::size_t>(height);
    const HeldBytes held(bytes);
    Meter::ofThisThread().paint(2 * bytes);
    coverage_.assign(bytes, 0);
    for (const auto& placed : placed_) blend(placed, box, static_cast<std::size_t>(stride));
    const Handle<cairo_surface_t, cairo_surface_destroy> mask(
        cairo_image_surface_create_for_data(coverage_.data(), CAIRO_FORMAT_A8, width, height, stride));
    cairo_mask_surface(cairo, mask.get(), box.x0, box.y0);
    cairo_surface_finish(mask.get());
    constexpr std::size_t worthKeeping = 1U << 20;
    if (coverage_.capacity() > worthKeeping) coverage_ = {};
}

/// Adds coverage where glyphs touch, so that joined letters have no seams.
void LineRaster::blend(const Placed& placed, const PixelRect& box, std::size_t stride) {
    const GlyphMask& mask = *placed.mask;
    const int left = std::max(placed.x, box.x0);
    const int right = std::min(placed.x + mask.width, box.x1);
    const int top = std::max(placed.y, box.y0);
    const int bottom = std::min(placed.y + mask.height, box.y1);
    const auto count = static_cast<std::size_t>(std::max(0, right - left));
    for (int y = top; y < bottom; ++y) {
        const std::uint8_t* from = mask.coverage.get() + std::ptrdiff_t{y - placed.y} * mask.width + (left - placed.x);
        std::uint8_t* to = coverage_.data() + static_cast<std::size_t>(y - box.y0) * stride + (left - box.x0);
        for (std::size_t i = 0; i < count; ++i) {
            const auto sum = static_cast<std::uint8_t>(to[i] + from[i]);
            to[i] = sum < to[i] ? 255 : sum;
        }
    }
}

}  // namespace tavrin::paint
