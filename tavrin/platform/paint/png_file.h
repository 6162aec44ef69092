// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tavrin::paint {

/// How the samples of a PNG are to be read; the values are the format's.
enum class PngColorType : std::uint8_t { gray = 0, rgb = 2, palette = 3, grayAlpha = 4, rgba = 6 };

/// A PNG file in the making: the signature and chunks, in the order of the calls.
class PngFile {
public:
    /// So many bytes end the last chunk and the file.
    static constexpr std::size_t endSize = 16;

    /// Starts with the signature and the header.
    PngFile(int width, int height, int bitDepth, PngColorType colorType);

    void addChunk(std::string_view type, std::span<const std::uint8_t> data);

    /// Starts a chunk whose data is appended to `bytes()` by the caller up to `endChunk`.
    void beginChunk(std::string_view type);
    void endChunk();

    [[nodiscard]] std::string& bytes() { return bytes_; }
    /// The file, closed by its end chunk.
    [[nodiscard]] std::string finish();

private:
    std::string bytes_;
    std::size_t chunkStart_ = 0;
};

}  // namespace tavrin::paint
