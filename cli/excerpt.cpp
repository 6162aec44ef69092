// SPDX-License-Identifier: MIT
#include "cli/excerpt.h"

#include <algorithm>

#include "tavrin/json/json_place.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin::cli {
namespace {

constexpr std::size_t columnsBefore = 60;
constexpr std::size_t columnsInAll = 100;
constexpr std::string_view cut = "…";

bool isControl(char32_t c) { return (c < 0x20 && c != '\t') || (c >= 0x7F && c < 0xA0); }

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// The place `columns` characters before `at`.
std::size_t stepsBack(std::string_view line, std::size_t at, std::size_t columns) {
    for (; columns > 0 && at > 0; --columns) {
        --at;
        for (int more = 3; more > 0 && at > 0 && continuesCharacter(line[at]); --more) --at;
    }
    return at;
}

}  // namespace

std::string printable(std::string_view text) {
    constexpr char32_t replacement = 0xFFFD;
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Step step = decodeUtf8(text, at);
        const bool isShown = step.codePoint && !isControl(*step.codePoint);
        appendUtf8(shown, isShown ? *step.codePoint : replacement);
        at += step.length;
    }
    return shown;
}

Excerpt excerptAt(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    const std::string_view line = lineAt(text, offset);
    const std::size_t at = std::min(offset - static_cast<std::size_t>(line.data() - text.data()), line.size());
    std::size_t begin = stepsBack(line, at, columnsBefore);
    const std::size_t end = skipCodePoints(line, begin, columnsInAll);

    const std::string before = (begin > 0 ? std::string(cut) : "") + printable(line.substr(begin, at - begin));
    Excerpt excerpt{before + printable(line.substr(at, end - at)), {}};
    if (end < line.size()) excerpt.line += cut;
    for (std::size_t i = 0; i < before.size(); i += decodeUtf8(before, i).length)
        excerpt.mark += before[i] == '\t' ? '\t' : ' ';
    excerpt.mark += '^';
    return excerpt;
}

}  // namespace tavrin::cli
