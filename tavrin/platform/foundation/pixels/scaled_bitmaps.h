// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "tavrin/platform/foundation/memory/lru_cache.h"
#include "tavrin/platform/foundation/pixels/bitmap.h"
#include "tavrin/platform/foundation/pixels/pixel_rect.h"

namespace tavrin {

/// Pictures in the sizes they were last asked for, so that scaling is done once. Forgets those that were not asked for
/// the longest time when all take more than a number of bytes. Any thread.
class ScaledBitmaps {
public:
    explicit ScaledBitmaps(std::size_t maximumBytes) : kept_(maximumBytes) {}

    /// Those of the whole process; at most 64 MiB.
    static ScaledBitmaps& shared();

    /// The picture scaled to `width` x `height` pixels as `scaledPixels` does it, itself when it has that size.
    std::shared_ptr<const Bitmap> scaled(const std::shared_ptr<const Bitmap>& picture, int width, int height);
    /// Only a part of the scaled picture, which is not empty.
    std::shared_ptr<const Bitmap> scaled(const std::shared_ptr<const Bitmap>& picture, int width, int height,
                                         const PixelRect& part);

    /// What the kept pictures take.
    [[nodiscard]] std::size_t byteCount() const;

private:
    struct Key {
        std::uint64_t picture;
        int width;
        int height;
        PixelRect part;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct Hash {
        std::size_t operator()(const Key& key) const;
    };

    std::shared_ptr<const Bitmap> find(const Key& key);
    std::shared_ptr<const Bitmap> keep(const Key& key, std::shared_ptr<const Bitmap> bitmap);

    mutable std::mutex mutex_;
    LRUCache<Key, std::shared_ptr<const Bitmap>, Hash> kept_;
};

}  // namespace tavrin
