// SPDX-License-Identifier: MIT
#include "tavrin/widget/kept_pictures.h"

#include <algorithm>
#include <utility>

namespace tavrin {

KeptPictures& KeptPictures::ofThisThread() {
    thread_local KeptPictures pictures;
    return pictures;
}

paint::LastPicture& KeptPictures::before(const std::optional<std::string>& document, const WidgetOptions& options) {
    Place place{document, options.room.name, options.room.size, options.scale, options.appearance};
    const auto found = std::ranges::find(pictures_, place, &Picture::place);
    if (found == pictures_.end()) {
        trim();  // also where drawings fail
        pictures_.push_front({std::move(place), paint::LastPicture(maximumBytes_)});
    } else {
        pictures_.splice(pictures_.begin(), pictures_, found);
    }
    return pictures_.front().last;
}

void KeptPictures::trim() {
    std::size_t count = 0;
    std::size_t bytes = 0;
    const auto isTooMuch = [&](const Picture& picture) {
        bytes += picture.last.byteCount();
        return ++count > maximumCount || bytes > maximumBytes_;
    };
    pictures_.erase(std::ranges::find_if(pictures_, isTooMuch), pictures_.end());
}

std::size_t KeptPictures::byteCount() const {
    std::size_t bytes = 0;
    for (const Picture& picture : pictures_) bytes += picture.last.byteCount();
    return bytes;
}

}  // namespace tavrin
