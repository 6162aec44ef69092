// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>

#include "tavrin/platform/foundation/memory/lru_cache.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/pixels/bitmap.h"

namespace tavrin {

/// Decoded pictures by their exact address. Beyond a number of bytes those that were not asked for the longest are
/// dropped; a picture larger than that is not kept. Thread-safe.
class ImageMemory {
public:
    explicit ImageMemory(std::size_t maximumBytes) : kept_(maximumBytes) {}

    /// A picture, and how many bytes were held beside it while it was made.
    struct Kept {
        std::shared_ptr<const Bitmap> image = nullptr;
        std::size_t meanwhile = 0;
    };

    /// The picture of an address; without one where there is none.
    [[nodiscard]] Kept find(const URL& url);
    /// Whether `find` would find one; does not count as asking for it.
    [[nodiscard]] bool holds(const URL& url) const;
    /// Keeps a picture in place of what its address had.
    void keep(const URL& url, std::shared_ptr<const Bitmap> image, std::size_t meanwhile = 0);

    void setMaximumBytes(std::size_t bytes);
    [[nodiscard]] std::size_t maximumBytes() const;
    /// What the pictures take now, with what it takes to keep them.
    [[nodiscard]] std::size_t bytes() const;

private:
    using Cache = LRUCache<URL, Kept>;

    mutable std::mutex mutex_;
    Cache kept_;
};

}  // namespace tavrin
