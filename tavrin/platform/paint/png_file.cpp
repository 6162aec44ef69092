// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_file.h"

#include <array>
#include <utility>

#include <libdeflate.h>

namespace tavrin::paint {
namespace {

constexpr std::string_view signature{"\x89PNG\r\n\x1A\n", 8};
/// A chunk's length and type stand before its data.
constexpr std::size_t lengthSize = 4;
constexpr std::size_t prefixSize = 8;

std::array<char, 4> bigEndian(std::uint32_t value) {
    const auto byte = [&](unsigned shift) { return static_cast<char>(static_cast<unsigned char>(value >> shift)); };
    return {byte(24), byte(16), byte(8), byte(0)};
}

}  // namespace

PngFile::PngFile(int width, int height, int bitDepth, PngColorType colorType) : bytes_(signature) {
    beginChunk("IHDR");
    for (const int side : {width, height}) {
        const auto digits = bigEndian(static_cast<std::uint32_t>(side));
        bytes_.append(digits.data(), digits.size());
    }
    bytes_ += static_cast<char>(bitDepth);
    bytes_ += static_cast<char>(colorType);
    bytes_.append(3, '\0');  // deflate, adaptive filters, not interlaced
    endChunk();
}

void PngFile::addChunk(std::string_view type, std::span<const std::uint8_t> data) {
    beginChunk(type);
    bytes_.append(data.begin(), data.end());
    endChunk();
}

void PngFile::beginChunk(std::string_view type) {
    chunkStart_ = bytes_.size();
    bytes_.append(lengthSize, '\0');
    bytes_ += type;
}

void PngFile::endChunk() {
    const std::size_t length = bytes_.size() - chunkStart_ - prefixSize;
    const auto lengthDigits = bigEndian(static_cast<std::uint32_t>(length));
    bytes_.replace(chunkStart_, lengthSize, lengthDigits.data(), lengthDigits.size());
    const char* checked = bytes_.data() + chunkStart_ + lengthSize;
    const auto checksum = bigEndian(libdeflate_crc32(0, checked, length + prefixSize - lengthSize));
    bytes_.append(checksum.data(), checksum.size());
}

std::string PngFile::finish() {
    addChunk("IEND", {});
    return std::move(bytes_);
}

}  // namespace tavrin::paint
