// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/base64.h"

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

}  // namespace tavrin
