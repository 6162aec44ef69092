// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/webp_encoder.h"

#include <array>
#include <cstddef>
#include <exception>
#include <new>
#include <utility>

#include <fmt/format.h>
#include <webp/encode.h>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin::paint {
namespace {

/// What the library is asked for, and what it takes for each pixel: time as a multiple of painting one, and the most
/// memory, which is that of noise.
struct WebpEffort {
    int level;
    std::uint64_t weight;
    std::size_t bytes;
};
/// Of the ten levels that the library has without loss.
constexpr std::array<WebpEffort, enumeratorCount<PngCompression>> lossless{{{1, 16, 33}, {2, 32, 38}, {7, 64, 46}}};
/// With loss, one of seven methods.
constexpr WebpEffort lossy{4, 16, 45};

WebpEffort effortOf(PngCompression compression, std::optional<int> quality) {
    return quality ? lossy : lossless[indexOf(compression)];
}

[[noreturn]] void failOnVersion() { throw TavrinError("Render", "the WebP library is of another version"); }

WebPConfig webpConfig(int level, std::optional<int> quality) {
    WebPConfig config;
    if (!WebPConfigInit(&config)) failOnVersion();
    if (!quality) {
        if (!WebPConfigLosslessPreset(&config, level)) failOnVersion();
        return config;
    }
    config.quality = static_cast<float>(*quality);
    config.method = level;
    config.use_sharp_yuv = 1;  // or coloured texts fade
    return config;
}

/// What is written, and what went wrong in what the library calls: nothing may be thrown through it.
struct WebpOutput {
    std::string bytes;
    std::exception_ptr failure;

    template <class Work>
    int attempt(const Work& work) noexcept {
        try {
            work();
            return 1;
        } catch (...) {
            failure = std::current_exception();
            return 0;
        }
    }
};

int takeBytes(const std::uint8_t* data, std::size_t size, const WebPPicture* of) {
    auto& output = *static_cast<WebpOutput*>(of->custom_ptr);
    return output.attempt([&] { output.bytes.append(reinterpret_cast<const char*>(data), size); });
}

/// Looks now and then whether there is time left.
int goesOn(int, const WebPPicture* of) { return static_cast<WebpOutput*>(of->custom_ptr)->attempt(checkBudget); }

[[noreturn]] void failWith(WebPEncodingError error) {
    if (error == VP8_ENC_ERROR_OUT_OF_MEMORY || error == VP8_ENC_ERROR_BITSTREAM_OUT_OF_MEMORY) throw std::bad_alloc();
    throw TavrinError("Render",
                      fmt::format("a picture could not be compressed (WebP error {})", static_cast<int>(error)));
}

}  // namespace

void checkWebpSize(const PixelBuffer& picture) {
    const auto fits = [](int side) { return side >= 1 && side <= maximumWebpSide; };
    if (!fits(picture.width()) || !fits(picture.height()))
        throw TavrinError("Render", fmt::format("a WebP picture of {} x {} pixels: each side must be 1 to {} pixels",
                                                picture.width(), picture.height(), maximumWebpSide));
}

std::uint64_t webpWeight(PngCompression compression) { return lossless[indexOf(compression)].weight; }

std::string encodeWebp(const PixelBuffer& source, PngCompression compression, std::optional<int> quality) {
    checkWebpSize(source);
    const auto [level, weight, bytes] = effortOf(compression, quality);
    const auto width = static_cast<std::size_t>(source.width());
    const std::size_t count = width * static_cast<std::size_t>(source.height());
    Meter::ofThisThread().paint(weight * count);
    const HeldBytes held(bytes * count);

    const WebPConfig config = webpConfig(level, quality);
    WebPPicture picture;
    if (!WebPPictureInit(&picture)) failOnVersion();
    picture.use_argb = 1;
    picture.width = source.width();
    picture.height = source.height();
    const Handle<WebPPicture, WebPPictureFree> end(&picture);
    if (!WebPPictureAlloc(&picture)) failWith(picture.error_code);
    for (int y = 0; y < source.height(); ++y)
        straightenPixels(source.row(y), picture.argb + std::ptrdiff_t{y} * picture.argb_stride, width);

    WebpOutput output;
    picture.writer = takeBytes;
    picture.progress_hook = goesOn;
    picture.custom_ptr = &output;
    const bool isWritten = WebPEncode(&config, &picture) != 0;
    if (output.failure) std::rethrow_exception(output.failure);
    if (!isWritten) failWith(picture.error_code);
    return std::move(output.bytes);
}

}  // namespace tavrin::paint
