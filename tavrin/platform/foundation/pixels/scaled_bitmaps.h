// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "tavrin/platform/foundation/pixels/bitmap.h"
#include "tavrin/platform/foundation/pixels/pixel_rect.h"

namespace tavrin {

/// Pictures in the sizes they were last asked for, so that scaling is done once. Forgets those that were not asked for
/// the longest time when all take more than a number of bytes. Any thread.
class ScaledBitmaps {
public:
    explicit ScaledBitmaps(std::size_t maximumBytes) : maximumBytes_(maximumBytes) {}

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
    struct Entry {
        Key key;
        std::shared_ptr<const Bitmap> bitmap;
    };

    std::shared_ptr<const Bitmap> find(const Key& key);
    std::shared_ptr<const Bitmap> keep(const Key& key, std::shared_ptr<const Bitmap> bitmap);

    const std::size_t maximumBytes_;
    mutable std::mutex mutex_;
    std::size_t bytes_ = 0;
    std::list<Entry> entries_;  ///< the last asked for first
    std::unordered_map<Key, std::list<Entry>::iterator, Hash> places_;
};

}  // namespace tavrin
