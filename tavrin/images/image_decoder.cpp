// SPDX-License-Identifier: MIT
#include "tavrin/images/image_decoder.h"

#include <algorithm>
#include <new>
#include <semaphore>
#include <thread>

#include "tavrin/images/decoders.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/foundation/threads/forked_child.h"

namespace tavrin {
namespace images {

bool Decoding::admits(std::uint64_t width, std::uint64_t height, std::uint64_t workingBytes) {
    if (width < 1 || height < 1 || width > ImageBounds::maximumSide || height > ImageBounds::maximumSide) return false;
    if (width > bounds.maximumPixels / height) return false;
    pixels = width * height;
    const std::uint64_t bytes = pixels * sizeof(std::uint32_t);
    meanwhile += workingBytes;
    isGivenUp = mayBeHeld && !mayBeHeld(bytes + meanwhile);
    return !isGivenUp && bytes + Bitmap::bytesInUse() <= bounds.maximumBytesInUse;
}

bool Decoding::isStopped() {
    if (stop.stop_requested()) return true;
    try {
        checkBudget();
    } catch (...) {  // which the libraries would not let through; a spent budget throws again later
        isGivenUp = true;
    }
    return isGivenUp;
}

namespace {

/// One of the places for pictures that are being decoded: their memory is not counted yet.
class DecodingPlace {
public:
    DecodingPlace() { places().acquire(); }
    DecodingPlace(const DecodingPlace&) = delete;
    DecodingPlace& operator=(const DecodingPlace&) = delete;
    ~DecodingPlace() { places().release(); }

private:
    using Places = std::counting_semaphore<>;
    static unsigned count() { return std::max(2U, std::thread::hardware_concurrency()); }
    static Places& places() {
        // Pictures may still be decoded while the process ends.
        static Places* const places = new Places(count());
        [[maybe_unused]] static const bool isForkable = beginAnewInChildren([] { ::new (places) Places(count()); });
        return *places;
    }
};

using Decode = Picture (*)(std::string_view bytes, Decoding& decoding);

/// The decoder of the format that a file begins like; null when it is none of them.
Decode decoderOf(std::string_view bytes) {
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return decodePng;
    if (bytes.starts_with("\xFF\xD8\xFF")) return decodeJpeg;
    if (bytes.starts_with("GIF87a") || bytes.starts_with("GIF89a")) return decodeGif;
    if (bytes.starts_with("RIFF") && bytes.size() >= 12 && bytes.substr(8).starts_with("WEBP")) return decodeWebP;
    return nullptr;
}

}  // namespace

Picture decodeImage(std::string_view bytes, Decoding& decoding) {
    const Decode decode = decoderOf(bytes);
    if (decode == nullptr) return nullptr;
    const DecodingPlace place;
    if (decoding.isStopped()) return nullptr;
    decoding.meanwhile = bytes.size();
    try {
        return decode(bytes, decoding);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace images

std::shared_ptr<const Bitmap> decodeImage(std::string_view bytes, const ImageBounds& bounds) {
    images::Decoding decoding{bounds};
    std::shared_ptr<const Bitmap> picture = images::decodeImage(bytes, decoding);
    if (decoding.isGivenUp) checkBudget();
    return picture;
}

}  // namespace tavrin
