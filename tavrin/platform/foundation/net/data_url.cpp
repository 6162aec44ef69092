// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/data_url.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/strings/ascii.h"

namespace tavrin {
namespace {

constexpr std::string_view blanks = " \t\n\f\r";

/// What each byte stands for as a digit of base64; 64 for those that are none.
constexpr std::array<std::uint8_t, 256> base64Digits = [] {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<std::uint8_t, 256> values{};
    values.fill(64);
    for (std::size_t i = 0; i < digits.size(); ++i)
        values[static_cast<unsigned char>(digits[i])] = static_cast<std::uint8_t>(i);
    return values;
}();

std::optional<std::string> base64Decoded(std::string text) {
    // 1. Blanks do not count, nor does what fills up the last four digits.
    std::erase_if(text, [](char c) { return blanks.find(c) != std::string_view::npos; });
    if (text.size() % 4 == 0)
        for (int i = 0; i < 2 && text.ends_with('='); ++i) text.pop_back();
    // 2. A last digit alone holds no byte.
    if (text.size() % 4 == 1) return std::nullopt;
    // 3. Each digit is six bits, each eight bits are a byte; those that are left over do not count.
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    unsigned bits = 0;
    unsigned count = 0;
    for (const char digit : text) {
        const unsigned value = base64Digits[static_cast<unsigned char>(digit)];
        if (value == 64) return std::nullopt;
        bits = bits << 6 | value;
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    return bytes;
}

/// Whether what stands before the comma says that base64 follows: ";base64" in any letter case at its end.
bool saysBase64(std::string head) {
    constexpr std::string_view word = "base64";
    head.erase(head.find_last_not_of(blanks) + 1);
    for (char& c : head) c = lowerCase(c);
    if (!head.ends_with(word)) return false;
    head.erase(head.size() - word.size());
    head.erase(head.find_last_not_of(' ') + 1);
    return head.ends_with(';');
}

}  // namespace

std::optional<std::string> dataOf(const URL& url) {
    if (!url.isData()) return std::nullopt;
    std::string_view text = url.string();
    text = text.substr(text.find(':') + 1);
    text = text.substr(0, text.find('#'));
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    std::string data = percentDecoded(text.substr(comma + 1));
    if (saysBase64(percentDecoded(text.substr(0, comma)))) return base64Decoded(std::move(data));
    return data;
}

}  // namespace tavrin
