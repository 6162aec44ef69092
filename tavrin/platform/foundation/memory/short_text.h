// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

namespace tavrin {

/// Where a text stands in a constant array of texts; the array's size where it does not. Made for keys and keywords:
/// sizes and bytes to compare with are compiled in, so that most comparisons end with one instruction.
template <const auto& texts>
[[nodiscard]] inline std::size_t indexOfText(std::string_view text) {
    std::size_t found = texts.size();
    const auto isAt = [&]<std::size_t index>(std::integral_constant<std::size_t, index>) {
        constexpr std::string_view candidate = texts[index];
        if (text.size() != candidate.size() || std::memcmp(text.data(), candidate.data(), candidate.size()) != 0)
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
