// SPDX-License-Identifier: MIT
#include "tavrin/images/plain_png.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string>

#include <libdeflate.h>

#include "tavrin/platform/foundation/memory/fresh_memory.h"
#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::images {
namespace {

constexpr std::size_t channels = 4;
constexpr std::uint8_t colorTypeRGBA = 6;
constexpr std::size_t mostBytes = std::size_t{4} << 20;
constexpr std::size_t signatureBytes = 8;
constexpr std::size_t headerBytes = 13;

std::uint32_t bigEndianAt(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<std::uint8_t>(bytes[at + i]);
    return number;
}

/// Takes the next chunk off a file. None where it is cut off or damaged.
struct Chunk {
    std::string_view type;
    std::string_view data;
};
std::optional<Chunk> takeChunk(std::string_view& rest) {
    constexpr std::size_t around = 12;  // length, type and checksum
    if (rest.size() < around) return std::nullopt;
    const std::size_t length = bigEndianAt(rest, 0);
    if (length > rest.size() - around) return std::nullopt;
    const std::string_view checked = rest.substr(4, 4 + length);
    if (libdeflate_crc32(0, checked.data(), checked.size()) != bigEndianAt(rest, 8 + length)) return std::nullopt;
    rest.remove_prefix(around + length);
    return Chunk{checked.substr(0, 4), checked.substr(4)};
}

/// The packed rows of a file that has nothing but those behind its header. `joined` keeps them where they stand in
/// several chunks.
std::optional<std::string_view> packedRows(std::string_view file, std::string& joined) {
    file.remove_prefix(signatureBytes);
    const std::optional<Chunk> header = takeChunk(file);
    if (!header || header->type != "IHDR" || header->data.size() != headerBytes) return std::nullopt;
    std::string_view rows;
    for (;;) {
        const std::optional<Chunk> chunk = takeChunk(file);
        if (!chunk) return std::nullopt;
        if (chunk->type == "IEND" && chunk->data.empty() && file.empty()) return rows;
        if (chunk->type != "IDAT") return std::nullopt;
        if (rows.empty()) {
            rows = chunk->data;
        } else {
            if (joined.empty()) joined = rows;
            rows = joined.append(chunk->data);
        }
    }
}

/// Whether the general decoder would unpack this, too: it goes back no further than the text says.
bool hasRoomToLookBack(std::string_view packed, std::size_t unpackedBytes) {
    if (packed.empty()) return false;
    const unsigned windowBits = (static_cast<std::uint8_t>(packed[0]) >> 4) + 8U;
    return windowBits == 15 || (windowBits < 15 && std::size_t{1} << windowBits >= unpackedBytes);
}

bool unpack(std::string_view packed, std::span<std::uint8_t> unpacked) {
    struct Free {
        void operator()(libdeflate_decompressor* it) const { libdeflate_free_decompressor(it); }
    };
    const std::unique_ptr<libdeflate_decompressor, Free> decompressor(libdeflate_alloc_decompressor());
    std::size_t read = 0;
    std::size_t written = 0;
    return decompressor != nullptr &&
           libdeflate_zlib_decompress_ex(decompressor.get(), packed.data(), packed.size(), unpacked.data(),
                                         unpacked.size(), &read, &written) == LIBDEFLATE_SUCCESS &&
           read == packed.size() && written == unpacked.size();
}

/// The channels of a pixel, worked on at once.
using Lanes = std::int16_t __attribute__((vector_size(2 * channels)));
using PixelBytes = std::uint8_t __attribute__((vector_size(channels)));

Lanes lanesOf(const std::uint8_t* pixel) {
    PixelBytes bytes;
    std::memcpy(&bytes, pixel, channels);
    return __builtin_convertvector(bytes, Lanes);
}

Lanes magnitude(Lanes lanes) {
    const Lanes negative = lanes < 0;
    return (lanes ^ negative) - negative;
}

Lanes choose(Lanes mask, Lanes one, Lanes other) { return (mask & one) | (~mask & other); }

/// Whichever of its neighbours a pixel is foreseen to be like, channel by channel.
Lanes paeth(Lanes left, Lanes above, Lanes corner) {
    const Lanes toLeft = magnitude(above - corner);
    const Lanes toAbove = magnitude(left - corner);
    const Lanes toCorner = magnitude(left + above - corner - corner);
    return choose((toLeft <= toAbove) & (toLeft <= toCorner), left, choose(toAbove <= toCorner, above, corner));
}

/// Adds to each pixel of a row what `predict` makes of those to the left, above, and above to the left.
template <class Predict>
void addPredicted(std::uint8_t* row, const std::uint8_t* above, std::size_t bytes, Predict predict) {
    Lanes left{};
    Lanes corner{};
    for (std::size_t x = 0; x < bytes; x += channels) {
        const Lanes before = lanesOf(above + x);
        left = (lanesOf(row + x) + predict(left, before, corner)) & 0xFF;
        corner = before;
        const auto sum = __builtin_convertvector(left, PixelBytes);
        std::memcpy(row + x, &sum, channels);
    }
}

/// Undoes a row's filter; false for an unknown one.
bool undoFilter(std::uint8_t filter, std::uint8_t* row, const std::uint8_t* above, std::size_t bytes) {
    switch (filter) {
        case 0: return true;
        case 1: addPredicted(row, above, bytes, [](Lanes left, Lanes, Lanes) { return left; }); return true;
        case 2:
            for (std::size_t x = 0; x < bytes; ++x) row[x] = static_cast<std::uint8_t>(row[x] + above[x]);
            return true;
        case 3:
            addPredicted(row, above, bytes, [](Lanes left, Lanes up, Lanes) { return (left + up) >> 1; });
            return true;
        case 4: addPredicted(row, above, bytes, paeth); return true;
        default: return false;
    }
}

/// Undoes the filters of all rows, each of which stands in front of its row.
bool undoFilters(std::uint8_t* rows, std::size_t rowBytes, std::size_t count) {
    const std::vector<std::uint8_t> none(rowBytes - 1);
    const std::uint8_t* above = none.data();
    for (std::size_t y = 0; y < count; ++y) {
        std::uint8_t* const row = rows + y * rowBytes + 1;
        if (!undoFilter(row[-1], row, above, rowBytes - 1)) return false;
        above = row;
    }
    return true;
}

}  // namespace

std::optional<std::vector<std::uint32_t>> plainPngPixels(std::string_view bytes, const PngHeader& header) {
    const std::size_t width = header.width;
    const std::size_t rowBytes = 1 + channels * width;  // the filter first
    if (header.bitDepth != 8 || header.colorType != colorTypeRGBA || header.interlaceMethod != 0 ||
        header.height > mostBytes / rowBytes || bytes.size() > 2 * mostBytes)
        return std::nullopt;
    std::string joined;
    const std::optional<std::string_view> packed = packedRows(bytes, joined);
    const std::size_t rowsBytes = rowBytes * header.height;
    if (!packed || !hasRoomToLookBack(*packed, rowsBytes)) return std::nullopt;
    // Rows become pixels where they stand: fresh memory costs as much as unpacking.
    const std::size_t enough = rowsBytes / channels + 1;
    std::vector<std::uint32_t> pixels;
    pixels.reserve(enough);
    takeAtOnce(pixels.data(), rowsBytes);
    pixels.resize(enough);
    auto* const rows = reinterpret_cast<std::uint8_t*>(pixels.data());
    if (!unpack(*packed, {rows, rowsBytes}) || !undoFilters(rows, rowBytes, header.height)) return std::nullopt;
    for (std::size_t y = 0; y < header.height; ++y) {
        std::uint32_t* const line = pixels.data() + y * width;  // never behind the row that goes there
        std::memmove(line, rows + y * rowBytes + 1, rowBytes - 1);
        premultiplyPixels(reinterpret_cast<const std::uint8_t*>(line), line, width);
    }
    pixels.resize(width * header.height);
    return pixels;
}

}  // namespace tavrin::images
