// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <mutex>
#include <string>

#include "cli/serve/served_picture.h"
#include "tavrin/platform/foundation/memory/lru_cache.h"

namespace tavrin::cli {

/// Finished pictures by all that makes their bytes. Bounded by their bytes; those that were asked for longest ago go
/// first. Thread-safe.
class PictureCache {
public:
    /// 0 bytes: nothing is kept.
    explicit PictureCache(std::size_t maximumBytes) : kept_(maximumBytes) {}

    /// Null where there is none, or none that still holds.
    [[nodiscard]] ServedPicturePtr find(const std::string& key, Date now);
    /// Keeps one that holds now.
    void keep(const std::string& key, ServedPicturePtr picture, Date now);
    [[nodiscard]] std::size_t bytes() const;

private:
    using Cache = LRUCache<std::string, ServedPicturePtr>;

    mutable std::mutex mutex_;
    Cache kept_;
};

}  // namespace tavrin::cli
