// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tavrin::paint {

/// A symbol's code as deflate streams have it: `length` bits, the lowest written first; no bits for a symbol that does
/// not occur.
struct HuffmanCode {
    std::uint16_t bits = 0;
    std::uint16_t length = 0;
};

/// Canonical prefix codes of at most `longest` bits, shorter for symbols that occur more often, the same for the same
/// counts. At least two symbols must occur, and 2^`longest` must be no fewer than those that do.
[[nodiscard]] std::vector<HuffmanCode> huffmanCodes(std::span<const std::uint32_t> counts, unsigned longest);

}  // namespace tavrin::paint
