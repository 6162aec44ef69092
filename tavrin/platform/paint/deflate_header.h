// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "tavrin/platform/paint/bit_writer.h"
#include "tavrin/platform/paint/huffman_code.h"

namespace tavrin::paint {

/// What stands before the blocks of a zlib stream: deflate, with distances up to 32 KiB.
constexpr std::string_view zlibHeader("\x78\x01", 2);

/// No header of a block takes more bytes.
constexpr std::size_t mostOfDeflateHeader = 512;

/// Says that a block of a deflate stream begins that has codes of its own, and which: of the 286 literals and lengths,
/// and how long those of the distances are, of which there are 1 to 30.
void writeDeflateHeader(BitWriter& bits, bool last, std::span<const HuffmanCode> codes,
                        std::span<const std::uint8_t> distanceLengths);

}  // namespace tavrin::paint
