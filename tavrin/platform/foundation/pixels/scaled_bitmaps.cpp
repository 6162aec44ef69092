// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/pixels/scaled_bitmaps.h"

#include <utility>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/pixels/scaling.h"

namespace tavrin {
namespace {

/// What an entry takes beside its pixels, roughly.
constexpr std::size_t overhead = 256;

std::size_t cost(const Bitmap& bitmap) { return bitmap.byteCount() + overhead; }

}  // namespace

std::size_t ScaledBitmaps::Hash::operator()(const Key& key) const {
    std::uint64_t hash = key.picture;
    for (const int number : {key.width, key.height, key.part.x0, key.part.y0, key.part.x1, key.part.y1})
        hash = (hash ^ static_cast<std::uint32_t>(number)) * 0x9E3779B97F4A7C15;
    return static_cast<std::size_t>(hash ^ hash >> 32);
}

ScaledBitmaps& ScaledBitmaps::shared() {
    static ScaledBitmaps shared(64U << 20);
    return shared;
}

std::shared_ptr<const Bitmap> ScaledBitmaps::scaled(const std::shared_ptr<const Bitmap>& picture, int width,
                                                    int height) {
    return scaled(picture, width, height, {0, 0, width, height});
}

std::shared_ptr<const Bitmap> ScaledBitmaps::scaled(const std::shared_ptr<const Bitmap>& picture, int width, int height,
                                                    const PixelRect& part) {
    const PixelRect whole{0, 0, picture->width(), picture->height()};
    if (width == whole.x1 && height == whole.y1 && part == whole) return picture;
    const Key key{picture->identity(), width, height, part};
    const PixelRows rows{picture->row(0), whole.x1, whole.y1, whole.x1};
    const HeldBytes held(part.area() * sizeof(std::uint32_t));
    if (std::shared_ptr<const Bitmap> known = find(key)) {
        // It costs the same whatever was drawn before.
        Meter::ofThisThread().paint(scalingCostOfRow(rows, width, height, part) *
                                    static_cast<std::uint64_t>(part.height()));
        return known;
    }
    return keep(key,
                std::make_shared<const Bitmap>(part.width(), part.height(), scaledPixels(rows, width, height, part)));
}

std::size_t ScaledBitmaps::byteCount() const {
    const std::lock_guard lock(mutex_);
    return kept_.cost();
}

std::shared_ptr<const Bitmap> ScaledBitmaps::find(const Key& key) {
    const std::lock_guard lock(mutex_);
    const auto* const known = kept_.find(key);
    return known ? *known : nullptr;
}

std::shared_ptr<const Bitmap> ScaledBitmaps::keep(const Key& key, std::shared_ptr<const Bitmap> bitmap) {
    const std::lock_guard lock(mutex_);
    // Another thread may have been quicker: all go on with one.
    if (const auto* const known = kept_.find(key)) return *known;
    const std::size_t bytes = cost(*bitmap);
    kept_.insert(key, bitmap, bytes);
    return bitmap;
}

}  // namespace tavrin
