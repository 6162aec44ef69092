// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/glyph_masks.h"

#include <cmath>

#include FT_OUTLINE_H

namespace tavrin::paint {
namespace {

constexpr std::size_t mostMaskBytes = 8U << 20;
constexpr int subpixels = 64;  // of FreeType's coordinates

int floorPixel(FT_Pos position) { return static_cast<int>(position >> 6); }
int ceilPixel(FT_Pos position) { return static_cast<int>((position + subpixels - 1) >> 6); }

}  // namespace

const GlyphMask& SizedMasks::mask(std::uint32_t glyph, unsigned phase, std::size_t& bytes) {
    const std::uint64_t key = (std::uint64_t{glyph} << 2) | phase;
    if (const auto found = masks_.find(key); found != masks_.end()) return found->second;
    const GlyphMask& mask = masks_[key] = render(glyph, phase);
    constexpr std::size_t overhead = 96;
    bytes += overhead + static_cast<std::size_t>(mask.width) * static_cast<std::size_t>(mask.height);
    return mask;
}

GlyphMask SizedMasks::render(std::uint32_t glyph, unsigned phase) const {
    GlyphMask mask;
    FT_Outline* outline = outlines_.outline(glyph);
    if (outline == nullptr) return mask;

    constexpr double one = 65536;
    const auto scale = static_cast<FT_Fixed>(std::lround(pixelsPerEm_ / outlines_.unitsPerEm() * subpixels * one));
    FT_Matrix matrix{scale, 0, 0, scale};
    FT_Outline_Transform(outline, &matrix);
    FT_Outline_Translate(outline, static_cast<FT_Pos>(phase) * subpixels / phasesOfPixel, 0);
    FT_BBox box;
    FT_Outline_Get_CBox(outline, &box);
    const int left = floorPixel(box.xMin);
    const int bottom = floorPixel(box.yMin);
    const int width = ceilPixel(box.xMax) - left;
    const int height = ceilPixel(box.yMax) - bottom;
    constexpr int absurd = 8192;
    if (width <= 0 || height <= 0 || width > absurd || height > absurd) return mask;

    FT_Outline_Translate(outline, -FT_Pos{left} * subpixels, -FT_Pos{bottom} * subpixels);
    mask.left = left;
    mask.top = -(bottom + height);
    mask.width = width;
    mask.height = height;
    mask.coverage =
        std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    FT_Bitmap bitmap{};
    bitmap.rows = static_cast<unsigned>(height);
    bitmap.width = static_cast<unsigned>(width);
    bitmap.pitch = width;
    bitmap.buffer = mask.coverage.get();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    FT_Outline_Get_Bitmap(freeType_, outline, &bitmap);
    return mask;
}

SizedMasks& GlyphMasks::sized(text::FontId font, double pixelsPerEm) {
    const auto [found, isNew] =
        sizes_.try_emplace({font, pixelsPerEm}, outlines_.ofFont(font), outlines_.freeType(), pixelsPerEm);
    constexpr std::size_t overhead = 256;
    if (isNew) bytes_ += overhead;
    return found->second;
}

void GlyphMasks::trim() {
    if (bytes_ <= mostMaskBytes) return;
    sizes_.clear();
    bytes_ = 0;
}

}  // namespace tavrin::paint
