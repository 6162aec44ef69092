#include <cstddef>
#include <utility>
#include <vector>

#include <spng.h>

#include "tavrin/images/decoders.h"
#include "tavrin/platform/foundation/handles.h"
#include "tavrin/platform/foundation/pixels.h"

namespace tavrin::images {
namespace {

/// What texts, profiles and the like may take, unpacked; they are read only to see that the file is whole.
constexpr std::size_t mostMetadata = 16U << 20;

}  // namespace

Picture decodePng(std::string_view bytes, const ImageBounds& bounds) {
    const Handle<spng_ctx, spng_ctx_free> context(spng_ctx_new(0));
    spng_ihdr header{};
    if (!context || spng_set_png_buffer(context.get(), bytes.data(), bytes.size()) != SPNG_OK ||
        // Otherwise a damaged transparency is left out and the picture shown without.
        spng_set_crc_action(context.get(), SPNG_CRC_ERROR, SPNG_CRC_ERROR) != SPNG_OK ||
        spng_set_chunk_limits(context.get(), mostMetadata, mostMetadata) != SPNG_OK ||
        spng_get_ihdr(context.get(), &header) != SPNG_OK || !isWithin(bounds, header.width, header.height))
        return nullptr;

    std::vector<std::uint32_t> pixels(std::size_t{header.width} * header.height);
    if (spng_decode_image(context.get(), pixels.data(), pixels.size() * sizeof(pixels[0]), SPNG_FMT_RGBA8,
                          SPNG_DECODE_TRNS) != SPNG_OK ||
        spng_decode_chunks(context.get()) != SPNG_OK)
        return nullptr;
    premultiplyPixels(reinterpret_cast<const std::uint8_t*>(pixels.data()), pixels.data(), pixels.size());
    return std::make_shared<const Bitmap>(static_cast<int>(header.width), static_cast<int>(header.height),
                                          std::move(pixels));
}

}  // namespace tavrin::images
