// SPDX-License-Identifier: MIT
#include "cli/serve/picture_cache.h"

#include <utility>

namespace tavrin::cli {

ServedPicturePtr PictureCache::find(const std::string& key, Date now) {
    const std::lock_guard lock(mutex_);
    const ServedPicturePtr* const known = kept_.find(key);
    return known && (*known)->holdsAt(now) ? *known : nullptr;
}

void PictureCache::keep(const std::string& key, ServedPicturePtr picture, Date now) {
    if (!picture->holdsAt(now)) return;
    constexpr std::size_t around = 256;  // of lists, tables and tags
    const std::size_t cost = picture->bytes->size() + key.size() + around;
    Cache::Dropped dropped;  // destroyed when the lock is gone
    const std::lock_guard lock(mutex_);
    dropped = kept_.insert(key, std::move(picture), cost);
}

std::size_t PictureCache::bytes() const {
    const std::lock_guard lock(mutex_);
    return kept_.cost();
}

}  // namespace tavrin::cli
