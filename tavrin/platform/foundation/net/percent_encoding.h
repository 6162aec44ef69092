// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tavrin {

/// The bytes that a part of a URI may hold as they are: what RFC 3986 calls unreserved, and `more`.
class PlainInURL {
public:
    constexpr PlainInURL(std::initializer_list<std::string_view> more) {
        add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~");
        for (const std::string_view bytes : more) add(bytes);
    }
    constexpr bool operator()(char c) const { return isPlain_[static_cast<unsigned char>(c)]; }

private:
    constexpr void add(std::string_view bytes) {
        for (const char c : bytes) isPlain_[static_cast<unsigned char>(c)] = true;
    }

    std::array<bool, 256> isPlain_{};
};

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
