#include "tavrin/platform/foundation/bitmap.h"

#include <atomic>
#include <utility>

#include "tavrin/platform/foundation/pixels.h"

namespace tavrin {
namespace {

std::uint64_t nextIdentity() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

Bitmap::Bitmap(int width, int height, std::vector<std::uint32_t> pixels)
    : width_(width),
      height_(height),
      opaque_(allOpaque(pixels.data(), pixels.size())),
      identity_(nextIdentity()),
      pixels_(std::move(pixels)) {}

}  // namespace tavrin
