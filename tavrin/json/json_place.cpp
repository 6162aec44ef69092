// SPDX-License-Identifier: MIT
#include "tavrin/json/json_place.h"

#include <algorithm>

#include "tavrin/json/json_scan.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

constexpr std::size_t npos = std::string_view::npos;

std::size_t startOfLine(std::string_view text, std::size_t offset) {
    if (offset == 0) return 0;
    return text.rfind('\n', offset - 1) + 1;  // npos + 1 is 0
}

/// Where the text goes on behind the value that starts there.
std::size_t skipValue(std::string_view text, std::size_t at) {
    for (std::size_t depth = 0; at < text.size();) {
        switch (text[at]) {
            case '"': at = skipString(text, at); break;
            case '[':
            case '{':
                ++depth;
                ++at;
                break;
            case ']':
            case '}':
                if (depth == 0) return at;
                --depth;
                ++at;
                break;
            default: at = depth == 0 ? skipScalar(text, at) : at + 1;
        }
        if (depth == 0) return at;
    }
    return at;
}

/// Whether the string at `start` that ends before `end` is `key`.
bool isKey(std::string_view text, std::size_t start, std::size_t end, const std::string& key) {
    if (end < start + 2) return false;
    const std::string_view raw = text.substr(start + 1, end - start - 2);
    return raw.find('\\') == npos ? raw == key : unescaped(raw) == key;
}

std::optional<std::size_t> findMember(std::string_view text, std::size_t at, const std::string& key) {
    if (at >= text.size() || text[at] != '{') return std::nullopt;
    for (;;) {
        at = skipBlanks(text, at + 1);  // behind the brace or a comma
        if (at >= text.size() || text[at] != '"') return std::nullopt;
        const std::size_t start = at;
        const std::size_t end = skipString(text, start);
        const std::size_t colon = skipBlanks(text, end);
        if (colon >= text.size() || text[colon] != ':') return std::nullopt;
        at = skipBlanks(text, colon + 1);
        if (isKey(text, start, end, key)) return at;
        at = skipBlanks(text, skipValue(text, at));
        if (at >= text.size() || text[at] != ',') return std::nullopt;
    }
}

std::optional<std::size_t> findElement(std::string_view text, std::size_t at, std::size_t index) {
    if (at >= text.size() || text[at] != '[') return std::nullopt;
    for (;; --index) {
        at = skipBlanks(text, at + 1);  // behind the bracket or a comma
        if (at >= text.size() || text[at] == ']') return std::nullopt;
        if (index == 0) return at;
        at = skipBlanks(text, skipValue(text, at));
        if (at >= text.size() || text[at] != ',') return std::nullopt;
    }
}

}  // namespace

TextPlace placeAt(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    const std::string_view before = text.substr(0, offset);
    const std::size_t start = startOfLine(text, offset);
    const auto lineEnds = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    return {offset, lineEnds + 1, countCodePoints(before.substr(start)) + 1};
}

std::string_view lineAt(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    const std::size_t start = startOfLine(text, offset);
    std::string_view line = text.substr(start, std::min(text.find('\n', offset), text.size()) - start);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::optional<std::size_t> locate(std::string_view text, const CodingPath& path) {
    std::size_t at = skipBlanks(text, 0);
    if (at == text.size()) return std::nullopt;
    for (const CodingKey& step : path) {
        const auto* key = std::get_if<std::string>(&step);
        const auto found = key ? findMember(text, at, *key) : findElement(text, at, std::get<std::size_t>(step));
        if (!found) return std::nullopt;
        at = *found;
    }
    return at;
}

}  // namespace tavrin
