// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tavrin::text {

/// Embedding levels of a paragraph; even ones run left to right.
struct BidiLevels {
    std::uint8_t base = 0;
    /// One for each character; empty when all are `base`.
    std::vector<std::uint8_t> levels;

    [[nodiscard]] std::uint8_t at(std::size_t character) const { return levels.empty() ? base : levels[character]; }
};

/// Works out the levels of a paragraph, whose direction is that of its first strong character.
BidiLevels bidiLevels(std::u32string_view paragraph);

/// The order in which a line's pieces of these levels stand from left to right.
std::vector<std::uint32_t> visualOrder(const std::vector<std::uint8_t>& levels);

}  // namespace tavrin::text
