// SPDX-License-Identifier: MIT
#include <cstddef>
#include <utility>
#include <vector>

#include <spng.h>

#include "tavrin/images/decoders.h"
#include "tavrin/images/plain_png.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::images {
namespace {

/// What texts, profiles and the like may take, unpacked; they are read only to see that the file is whole.
constexpr std::size_t mostMetadata = 16U << 20;

/// Reads every row, of an interlaced picture once for each pass that it has pixels in.
bool readRows(spng_ctx* context, std::uint32_t* pixels, std::size_t width, Decoding& decoding) {
    if (spng_decode_image(context, nullptr, 0, SPNG_FMT_RGBA8, SPNG_DECODE_TRNS | SPNG_DECODE_PROGRESSIVE) != SPNG_OK)
        return false;
    spng_row_info row{};
    int outcome = SPNG_OK;
    while (outcome == SPNG_OK && !decoding.isStopped()) {
        outcome = spng_get_row_info(context, &row);
        if (outcome == SPNG_OK)
            outcome = spng_decode_row(context, pixels + row.row_num * width, width * sizeof(pixels[0]));
    }
    return outcome == SPNG_EOI;
}

}  // namespace

Picture decodePng(std::string_view bytes, Decoding& decoding) {
    const Handle<spng_ctx, spng_ctx_free> context(spng_ctx_new(0));
    spng_ihdr header{};
    if (!context || spng_set_png_buffer(context.get(), bytes.data(), bytes.size()) != SPNG_OK ||
        // Otherwise a damaged transparency is left out and the picture shown without.
        spng_set_crc_action(context.get(), SPNG_CRC_ERROR, SPNG_CRC_ERROR) != SPNG_OK ||
        spng_set_chunk_limits(context.get(), mostMetadata, mostMetadata) != SPNG_OK ||
        spng_get_ihdr(context.get(), &header) != SPNG_OK || !decoding.admits(header.width, header.height))
        return nullptr;

    const auto bitmapOf = [&](std::vector<std::uint32_t> pixels) {
        return std::make_shared<const Bitmap>(static_cast<int>(header.width), static_cast<int>(header.height),
                                              std::move(pixels));
    };
    const PngHeader plain{header.width, header.height, header.bit_depth, header.color_type, header.interlace_method};
    if (auto pixels = plainPngPixels(bytes, plain)) return bitmapOf(*std::move(pixels));
    std::vector<std::uint32_t> pixels(std::size_t{header.width} * header.height);
    if (!readRows(context.get(), pixels.data(), header.width, decoding) || spng_decode_chunks(context.get()) != SPNG_OK)
        return nullptr;
    premultiplyPixels(reinterpret_cast<const std::uint8_t*>(pixels.data()), pixels.data(), pixels.size());
    return bitmapOf(std::move(pixels));
}

}  // namespace tavrin::images
