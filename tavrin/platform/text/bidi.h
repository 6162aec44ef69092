// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrin::text {

/// Embedding levels of a paragraph; even ones run left to right.
struct BidiLevels {
    std::uint8_t base = 0;
    /// One for each character; empty when all are `base`.
    std::vector<std::uint8_t> levels;
    /// In how many pieces they were worked out; 0 when nothing had to be.
    std::size_t pieces = 0;

    [[nodiscard]] std::uint8_t at(std::size_t character) const { return levels.empty() ? base : levels[character]; }
};

/// Works out the levels of a paragraph, whose direction is that of its first strong character. In time linear in its
/// length: of more isolates and brackets than texts have, some only count up to where a piece of it ends.
BidiLevels bidiLevels(std::u32string_view paragraph);

/// The order in which a line's pieces of these levels stand from left to right.
std::vector<std::uint32_t> visualOrder(const std::vector<std::uint8_t>& levels);

}  // namespace tavrin::text
