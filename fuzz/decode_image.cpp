// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tavrin/images/decoders.h"
#include "tavrin/images/image_processer.h"

// A picture's bytes, decoded by the decoder of one format (`TAVRIN_FUZZED_DECODER`) and made to fit.

namespace {

/// Small enough that one input takes milliseconds.
constexpr std::size_t pixels = 1U << 18;

void check(const tavrin::Bitmap& picture) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const std::uint32_t pixel = picture.row(y)[x];
            const std::uint32_t alpha = pixel >> 24;
            const bool isPremultiplied =
                (pixel >> 16 & 0xFF) <= alpha && (pixel >> 8 & 0xFF) <= alpha && (pixel & 0xFF) <= alpha;
            if (!isPremultiplied || (picture.isOpaque() && alpha != 0xFF)) std::abort();
        }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    tavrin::images::Decoding decoding{.bounds = {.maximumPixels = pixels}};
    const auto picture = tavrin::images::TAVRIN_FUZZED_DECODER(bytes, decoding);
    if (!picture) return 0;
    if (picture->byteCount() > 4 * pixels) std::abort();
    check(*picture);
    check(*tavrin::ImageProcesser({9, 9}).fit(picture));
    return 0;
}
