// SPDX-License-Identifier: MIT
#include "tavrin/images/image_memory.h"

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
    const Kept* const kept = kept_.find(url);
    return kept ? *kept : Kept{};
}

bool ImageMemory::holds(const URL& url) const {
    const std::lock_guard lock(mutex_);
    return kept_.contains(url);
}

void ImageMemory::keep(const URL& url, std::shared_ptr<const Bitmap> image, std::size_t meanwhile) {
    const std::size_t cost = costOf(url, *image);
    Cache::Dropped dropped;  // destroyed last, when the lock is gone
    const std::lock_guard lock(mutex_);
    dropped = kept_.insert(url, {std::move(image), meanwhile}, cost);
}

void ImageMemory::setMaximumBytes(std::size_t bytes) {
    Cache::Dropped dropped;
    const std::lock_guard lock(mutex_);
    dropped = kept_.setMaximumCost(bytes);
}

std::size_t ImageMemory::maximumBytes() const {
    const std::lock_guard lock(mutex_);
    return kept_.maximumCost();
}

std::size_t ImageMemory::bytes() const {
    const std::lock_guard lock(mutex_);
    return kept_.cost();
}

}  // namespace tavrin
