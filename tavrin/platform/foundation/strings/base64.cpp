// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/base64.h"

#include <algorithm>
#include <cstddef>

namespace tavrin {

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        // Three bytes are four digits; of one byte two count, of two bytes three.
        const std::string_view group = bytes.substr(at, 3);
        unsigned bits = 0;
        for (std::size_t i = 0; i < 3; ++i)
            bits = bits << 8 | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i) text += i <= group.size() ? digits[bits >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

std::string base64URL(std::string_view bytes) {
    std::string text = base64(bytes);
    while (text.ends_with('=')) text.pop_back();
    std::ranges::replace(text, '+', '-');
    std::ranges::replace(text, '/', '_');
    return text;
}

std::optional<std::string> fromBase64URL(std::string_view text) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    if (text.size() % 4 == 0)
        for (int i = 0; i < 2 && text.ends_with('='); ++i) text.remove_suffix(1);
    if (text.size() % 4 == 1) return std::nullopt;  // a last digit alone holds no byte
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    unsigned bits = 0;
    unsigned count = 0;
    for (const char digit : text) {
        const std::size_t value = digits.find(digit);
        if (value == std::string_view::npos) return std::nullopt;
        bits = bits << 6 | static_cast<unsigned>(value);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    return bytes;
}

}  // namespace tavrin
