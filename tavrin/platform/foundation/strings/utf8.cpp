// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/utf8.h"

#include <cstdint>

namespace tavrin {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

std::uint8_t byteAt(std::string_view text, std::size_t offset) { return static_cast<std::uint8_t>(text[offset]); }

/// How many bytes a lead byte announces; 0 for one that cannot lead.
std::size_t announcedLength(std::uint8_t lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC2) return 0;  // a continuation byte, or an overlong form of ASCII
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return lead < 0xF5 ? 4 : 0;
}

/// Whether `second` may follow `lead`: keeps out overlong forms, surrogates and what is above U+10FFFF.
bool mayFollow(std::uint8_t lead, std::uint8_t second) {
    const std::uint8_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const std::uint8_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    return second >= lowest && second <= highest;
}

}  // namespace

Utf8Step decodeUtf8(std::string_view text, std::size_t offset) {
    const std::uint8_t lead = byteAt(text, offset);
    const std::size_t length = announcedLength(lead);
    if (length == 0) return {std::nullopt, 1};
    if (length == 1) return {lead, 1};
    char32_t codePoint = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (offset + i == text.size()) return {std::nullopt, i};
        const std::uint8_t next = byteAt(text, offset + i);
        if (i == 1 ? !mayFollow(lead, next) : (next & 0xC0) != 0x80) return {std::nullopt, i};
        codePoint = codePoint << 6 | (next & 0x3FU);
    }
    return {codePoint, length};
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Step step = decodeUtf8(text, at);
        if (!step.codePoint) return false;
        at += step.length;
    }
    return true;
}

std::size_t countCodePoints(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) at += decodeUtf8(text, at).length;
    return count;
}

std::size_t skipCodePoints(std::string_view text, std::size_t offset, std::size_t count) {
    for (; count > 0 && offset < text.size(); --count) offset += decodeUtf8(text, offset).length;
    return offset;
}

std::string sanitizedUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Step step = decodeUtf8(text, at);
        result += step.codePoint ? text.substr(at, step.length) : replacement;
        at += step.length;
    }
    return result;
}

void appendUtf8(std::string& out, char32_t codePoint) {
    const auto continuation = [&](unsigned shift) { out += static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU)); };
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0U | codePoint >> 6);
        continuation(0);
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0U | codePoint >> 12);
        continuation(6);
        continuation(0);
    } else {
        out += static_cast<char>(0xF0U | codePoint >> 18);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

}  // namespace tavrin
