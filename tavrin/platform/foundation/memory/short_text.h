// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace tavrin {

/// Whether two texts of `size` bytes are the same. Of more than eight bytes compilers would call the C library, which
/// takes longer than to compare them.
template <std::size_t size>
[[nodiscard]] inline bool areSameBytes(const char* one, const char* other) {
    constexpr std::size_t word = sizeof(std::uint64_t);
    if constexpr (size <= word) {
        return std::memcmp(one, other, size) == 0;
    } else {
        std::uint64_t difference = 0;
        const auto compareAt = [&](std::size_t at) {
            std::uint64_t a = 0;
            std::uint64_t b = 0;
            std::memcpy(&a, one + at, word);
            std::memcpy(&b, other + at, word);
            difference |= a ^ b;
        };
        for (std::size_t at = 0; at + word < size; at += word) compareAt(at);
        compareAt(size - word);
        return difference == 0;
    }
}

/// Where a text stands in a constant array of texts; the array's size where it does not. Made for keys and keywords:
/// sizes and bytes to compare with are compiled in, so that most comparisons end with one instruction.
template <const auto& texts>
[[nodiscard]] inline std::size_t indexOfText(std::string_view text) {
    std::size_t found = texts.size();
    const auto isAt = [&]<std::size_t index>(std::integral_constant<std::size_t, index>) {
        constexpr std::string_view candidate = texts[index];
        if (text.size() != candidate.size() || !areSameBytes<candidate.size()>(text.data(), candidate.data()))
            return false;
        found = index;
        return true;
    };
    [&]<std::size_t... index>(std::index_sequence<index...>) {
        static_cast<void>((isAt(std::integral_constant<std::size_t, index>()) || ...));
    }
    (std::make_index_sequence<texts.size()>());
    return found;
}

}  // namespace tavrin
