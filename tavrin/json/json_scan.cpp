// SPDX-License-Identifier: MIT
#include "tavrin/json/json_scan.h"

#include <algorithm>

#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

char32_t hexNumber(std::string_view digits) {
    char32_t number = 0;
    for (const char c : digits)
        number = number * 16 + static_cast<char32_t>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
    return number;
}

/// The code point that a `\u` escape at the front of `raw` stands for, taken off together with the escape.
char32_t takeUnicodeEscape(std::string_view& raw) {
    const char32_t first = hexNumber(raw.substr(2, 4));
    raw.remove_prefix(std::min<std::size_t>(6, raw.size()));
    if (first < 0xD800 || first > 0xDFFF) return first;
    const char32_t second = raw.starts_with("\\u") ? hexNumber(raw.substr(2, 4)) : 0;
    if (first > 0xDBFF || second < 0xDC00 || second > 0xDFFF) return 0xFFFD;
    raw.remove_prefix(std::min<std::size_t>(6, raw.size()));
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

}  // namespace

std::size_t skipBlanks(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of(" \t\n\r", at), text.size());
}

std::size_t skipString(std::string_view text, std::size_t at) {
    for (++at; at < text.size() && text[at] != '"'; ++at)
        if (text[at] == '\\') ++at;
    return std::min(at + 1, text.size());
}

std::size_t skipScalar(std::string_view text, std::size_t at) {
    return std::min(text.find_first_of(" \t\n\r,]}", at), text.size());
}

std::string unescaped(std::string_view raw) {
    constexpr std::string_view letters = "bfnrt";
    constexpr std::string_view meanings = "\b\f\n\r\t";
    std::string text;
    while (!raw.empty()) {
        const std::size_t plain = std::min(raw.find('\\'), raw.size());
        text += raw.substr(0, plain);
        raw.remove_prefix(plain);
        if (raw.size() < 2) break;
        if (raw[1] == 'u') {
            appendUtf8(text, takeUnicodeEscape(raw));
            continue;
        }
        const std::size_t letter = letters.find(raw[1]);
        text += letter == std::string_view::npos ? raw[1] : meanings[letter];
        raw.remove_prefix(2);
    }
    return text;
}

}  // namespace tavrin
