// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/animation/frame_patch.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include "tavrin/platform/foundation/budget/meter.h"

namespace tavrin::paint {
namespace {

std::span<const std::uint32_t> pixelsOf(const PixelBuffer& picture, int y) {
    return {picture.row(y), static_cast<std::size_t>(picture.width())};
}

bool isOpaque(std::uint32_t pixel) { return pixel >> 24 == 0xFF; }

/// Whether each pixel that changed is opaque now, so that a patch drawn over the frame before gives exactly this one.
bool canBeDrawnOver(const PixelBuffer& before, const PixelBuffer& now, const PixelRect& area) {
    for (int y = area.y0; y < area.y1; ++y)
        for (int x = area.x0; x < area.x1; ++x)
            if (now.row(y)[x] != before.row(y)[x] && !isOpaque(now.row(y)[x])) return false;
    return true;
}

}  // namespace

PixelRect changedArea(const PixelBuffer& before, const PixelBuffer& now) {
    PixelRect area{now.width(), now.height(), 0, 0};
    for (int y = 0; y < now.height(); ++y) {
        Meter::ofThisThread().paint(static_cast<std::uint64_t>(now.width()));
        const std::span<const std::uint32_t> left = pixelsOf(before, y);
        const std::span<const std::uint32_t> right = pixelsOf(now, y);
        const auto first = std::mismatch(left.begin(), left.end(), right.begin()).first;
        if (first == left.end()) continue;
        const auto behindLast = std::mismatch(left.rbegin(), left.rend(), right.rbegin()).first.base();
        area.x0 = std::min(area.x0, static_cast<int>(first - left.begin()));
        area.x1 = std::max(area.x1, static_cast<int>(behindLast - left.begin()));
        area.y0 = std::min(area.y0, y);
        area.y1 = y + 1;
    }
    return area.empty() ? PixelRect{} : area;
}

FramePatch wholePatch(const PixelBuffer& picture) {
    return {{0, 0, picture.width(), picture.height()}, picture, false};
}

FramePatch patchOf(const PixelBuffer& before, const PixelBuffer& now, const PixelRect& area) {
    FramePatch patch{area, PixelBuffer(area.width(), area.height()), canBeDrawnOver(before, now, area)};
    for (int y = 0; y < area.height(); ++y) {
        Meter::ofThisThread().paint(static_cast<std::uint64_t>(area.width()));
        const std::uint32_t* const old = before.row(area.y0 + y) + area.x0;
        const std::uint32_t* const row = now.row(area.y0 + y) + area.x0;
        std::uint32_t* const out = patch.pixels.row(y);
        for (int x = 0; x < area.width(); ++x) out[x] = patch.isBlended && row[x] == old[x] ? 0 : row[x];
    }
    return patch;
}

}  // namespace tavrin::paint
