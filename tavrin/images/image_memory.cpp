// SPDX-License-Identifier: MIT
#include "tavrin/images/image_memory.h"

#include <iterator>
#include <utility>

namespace tavrin {
namespace {

/// What an entry takes: also small pictures take some memory.
std::size_t costOf(const URL& url, const Bitmap& image) {
    constexpr std::size_t bookkeeping = 256;
    return image.byteCount() + url.string().size() + bookkeeping;
}

}  // namespace

ImageMemory::Kept ImageMemory::find(const URL& url) {
    const std::lock_guard lock(mutex_);
    const auto found = byURL_.find(url);
    if (found == byURL_.end()) return {};
    entries_.splice(entries_.begin(), entries_, found->second);
    return found->second->kept;
}

bool ImageMemory::holds(const URL& url) const {
    const std::lock_guard lock(mutex_);
    return byURL_.contains(url);
}

void ImageMemory::keep(const URL& url, std::shared_ptr<const Bitmap> image, std::size_t meanwhile) {
    Entries dropped;  // destroyed last, when the lock is gone
    const std::lock_guard lock(mutex_);
    if (const auto found = byURL_.find(url); found != byURL_.end()) {
        bytes_ -= costOf(url, *found->second->kept.image);
        dropped.splice(dropped.end(), entries_, found->second);
        byURL_.erase(found);
    }
    const std::size_t cost = costOf(url, *image);
    if (cost > maximumBytes_) return;
    bytes_ += cost;
    entries_.push_front({url, {std::move(image), meanwhile}});
    byURL_.emplace(url, entries_.begin());
    dropped.splice(dropped.end(), evict());
}

void ImageMemory::setMaximumBytes(std::size_t bytes) {
    Entries dropped;
    const std::lock_guard lock(mutex_);
    maximumBytes_ = bytes;
    dropped = evict();
}

std::size_t ImageMemory::maximumBytes() const {
    const std::lock_guard lock(mutex_);
    return maximumBytes_;
}

std::size_t ImageMemory::bytes() const {
    const std::lock_guard lock(mutex_);
    return bytes_;
}

ImageMemory::Entries ImageMemory::evict() {
    Entries dropped;
    while (bytes_ > maximumBytes_) {
        const auto last = std::prev(entries_.end());
        bytes_ -= costOf(last->url, *last->kept.image);
        byURL_.erase(last->url);
        dropped.splice(dropped.end(), entries_, last);
    }
    return dropped;
}

}  // namespace tavrin
