// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

// The C library's own depend on the locale and are undefined for negative `char`s. `Char` is any character type.

template <class Char>
[[nodiscard]] constexpr bool isDigit(Char c) {
    return c >= '0' && c <= '9';
}

template <class Char>
[[nodiscard]] constexpr bool isLetter(Char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

template <class Char>
[[nodiscard]] constexpr bool isHexDigit(Char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// What a hexadecimal digit stands for.
[[nodiscard]] constexpr unsigned hexValue(char digit) {
    return static_cast<unsigned>(isDigit(digit) ? digit - '0' : (digit | 0x20) - 'a' + 10);
}

[[nodiscard]] constexpr char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
}

}  // namespace tavrin
