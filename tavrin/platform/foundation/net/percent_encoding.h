// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrin {

/// What RFC 3986 allows in every part of a URI as it is.
inline constexpr std::string_view unreservedInURLs =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

/// `text` with "%" and two hexadecimal digits for each byte that `isKept(byte)` does not hold for; it is handed the
/// bytes of `text` themselves, and so can tell where they stand.
template <class IsKept>
[[nodiscard]] std::string percentEncoded(std::string_view text, const IsKept& isKept) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (const char& c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (isKept(c))
            encoded += c;
        else
            encoded.append("%").append({digits[byte >> 4], digits[byte & 15]});
    }
    return encoded;
}

/// Whether `text` goes on at `at` with "%" and two hexadecimal digits.
[[nodiscard]] bool isEscapeAt(std::string_view text, std::size_t at);

/// `text` with the byte that it stands for in place of each escape; a "%" that begins none stays.
[[nodiscard]] std::string percentDecoded(std::string_view text);

}  // namespace tavrin
