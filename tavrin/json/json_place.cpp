#include "tavrin/json/json_place.h"

#include <algorithm>

#include "tavrin/platform/foundation/utf8.h"

namespace tavrin {
namespace {

constexpr std::size_t npos = std::string_view::npos;

std::size_t startOfLine(std::string_view text, std::size_t offset) {
    if (offset == 0) return 0;
    return text.rfind('\n', offset - 1) + 1;  // npos + 1 is 0
}

/// Where the text goes on behind blanks.
std::size_t skipBlanks(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of(" \t\n\r", at), text.size());
}

/// Where the text goes on behind the string that starts there.
std::size_t skipString(std::string_view text, std::size_t at) {
    for (++at; at < text.size() && text[at] != '"'; ++at)
        if (text[at] == '\\') ++at;
    return std::min(at + 1, text.size());
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
            default: at = depth == 0 ? std::min(text.find_first_of(" \t\n\r,]}", at), text.size()) : at + 1;
        }
        if (depth == 0) return at;
    }
    return at;
}

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

/// The string that stands between two quotes.
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
        text += letter == npos ? raw[1] : meanings[letter];
        raw.remove_prefix(2);
    }
    return text;
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
