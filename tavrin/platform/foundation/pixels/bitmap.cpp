// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/pixels/bitmap.h"

#include <atomic>
#include <utility>

#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin {
namespace {

std::uint64_t nextIdentity() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::atomic<std::size_t>& usedBytes() {
    static std::atomic<std::size_t> bytes{0};
    return bytes;
}

}  // namespace

Bitmap::Bitmap(int width, int height, std::vector<std::uint32_t> pixels)
    : width_(width),
      height_(height),
      opaque_(allOpaque(pixels.data(), pixels.size())),
      identity_(nextIdentity()),
      pixels_(std::move(pixels)) {
    usedBytes().fetch_add(byteCount(), std::memory_order_relaxed);
}

Bitmap::~Bitmap() { usedBytes().fetch_sub(byteCount(), std::memory_order_relaxed); }

std::size_t Bitmap::bytesInUse() { return usedBytes().load(std::memory_order_relaxed); }

}  // namespace tavrin
