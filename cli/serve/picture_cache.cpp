// SPDX-License-Identifier: MIT
#include "cli/serve/picture_cache.h"

#include <iterator>
#include <utility>

namespace tavrin::cli {

std::size_t PictureCache::cost(const Kept& kept) {
    constexpr std::size_t around = 256;  // of lists, tables and tags
    return kept.picture->bytes->size() + kept.key.size() + around;
}

ServedPicturePtr PictureCache::find(const std::string& key, Date now) {
    const std::lock_guard lock(mutex_);
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) return nullptr;
    const auto kept = found->second;
    if (!kept->picture->holdsAt(now)) {
        drop(kept);
        return nullptr;
    }
    kept_.splice(kept_.begin(), kept_, kept);
    return kept->picture;
}

void PictureCache::keep(const std::string& key, ServedPicturePtr picture, Date now) {
    if (!picture->holdsAt(now)) return;
    const std::lock_guard lock(mutex_);
    if (const auto found = byKey_.find(key); found != byKey_.end()) drop(found->second);
    kept_.push_front({key, std::move(picture)});
    byKey_.emplace(kept_.front().key, kept_.begin());
    bytes_ += cost(kept_.front());
    while (bytes_ > maximumBytes_) drop(std::prev(kept_.end()));
}

std::size_t PictureCache::bytes() const {
    const std::lock_guard lock(mutex_);
    return bytes_;
}

void PictureCache::drop(List::iterator kept) {
    bytes_ -= cost(*kept);
    byKey_.erase(kept->key);
    kept_.erase(kept);
}

}  // namespace tavrin::cli
