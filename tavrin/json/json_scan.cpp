// SPDX-License-Identifier: MIT
#include "tavrin/json/json_scan.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

bool isInWord(char c) { return isLetter(c) || isDigit(c) || c == '_'; }

bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

/// Whether a character in a string stands for itself and is a single byte.
bool isPlain(char c) { return static_cast<unsigned char>(c) - 0x20U < 0x60 && c != '"' && c != '\\'; }

bool isSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }
bool isLowSurrogate(char32_t code) { return code >= 0xDC00 && code <= 0xDFFF; }

std::string hexCode(std::uint32_t number, std::size_t digits) {
    std::string code(digits, '0');
    for (std::size_t i = digits; i-- > 0; number >>= 4) code[i] = "0123456789ABCDEF"[number & 0xF];
    return code;
}

}  // namespace

bool JSONScanner::next() {
    switch (behind_) {
        case Behind::nothing:
            if (text_.starts_with("\xEF\xBB\xBF"))
                return failAt(0, "unexpected byte order mark at the start of the document");
            skipBlanks();
            return atEnd() ? failAt(at_, "the document is empty") : value();
        case Behind::brace: skipBlanks(); return at('}') ? close() : key("a key in quotes or '}'");
        case Behind::bracket: skipBlanks(); return at(']') ? close() : value();
        case Behind::key:
            skipBlanks();
            if (!take(':')) return expected("':' after a key");
            skipBlanks();
            return value();
        case Behind::value: return afterValue();
    }
    return false;
}

bool JSONScanner::afterValue() {
    skipBlanks();
    if (closings_.empty()) return atEnd() ? false : expected("the end of the document");
    const bool inObject = closings_.back() == '}';
    if (at(closings_.back())) return close();
    if (!take(',')) return expected(inObject ? "',' or '}' after a value" : "',' or ']' after a value");
    skipBlanks();
    return inObject ? key("a key in quotes after ','") : value();
}

bool JSONScanner::value() {
    begin_ = at_;
    if (at('{')) return open(Event::beginObject, '}', Behind::brace);
    if (at('[')) return open(Event::beginArray, ']', Behind::bracket);
    event_ = Event::scalar;
    behind_ = Behind::value;
    return scalar();
}

bool JSONScanner::open(Event event, char closing, Behind behind) {
    if (closings_.size() == maximumDepth_)
        return failAt(at_, "nested deeper than " + toText(maximumDepth_) + " levels");
    closings_.push_back(closing);
    ++at_;
    event_ = event;
    behind_ = behind;
    return true;
}

bool JSONScanner::close() {
    begin_ = at_++;
    closings_.pop_back();
    event_ = Event::end;
    behind_ = Behind::value;
    return true;
}

bool JSONScanner::key(std::string_view what) {
    if (!at('"')) return expected(what);
    begin_ = at_;
    event_ = Event::key;
    behind_ = Behind::key;
    return string();
}

bool JSONScanner::scalar() {
    if (at('"')) return string();
    if (at('-') || atDigit()) return number();
    for (const std::string_view word : {"true", "false", "null"}) {
        const std::size_t end = at_ + word.size();
        const bool goesOn = end < text_.size() && isInWord(text_[end]);
        if (text_.substr(at_).starts_with(word) && !goesOn) {
            at_ = end;
            return true;
        }
    }
    return expected("a value");
}

bool JSONScanner::number() {
    take('-');
    if (at('0')) {
        ++at_;
        if (atDigit()) return failAt(begin_, "a number must not start with 0");
    } else if (!digits("after '-'")) {
        return false;
    }
    if (take('.') && !digits("after '.'")) return false;
    const bool hasExponent = take('e') || take('E');
    if (hasExponent) {
        if (!take('+')) take('-');
        if (!digits("in an exponent")) return false;
    }
    constexpr std::size_t alwaysFinite = 300;  // so few digits
    if (!hasExponent && at_ - begin_ <= alwaysFinite) return true;
    const std::optional<double> number = doubleFromText(raw());
    return number && std::isfinite(*number) ? true : failAt(begin_, "number is too large");
}

bool JSONScanner::digits(std::string_view where) {
    if (!atDigit()) return expected("a digit " + std::string(where));
    while (atDigit()) ++at_;
    return true;
}

bool JSONScanner::string() {
    for (++at_;;) {
        while (!atEnd() && isPlain(text_[at_])) ++at_;
        if (atEnd()) return failAt(begin_, "unterminated string");
        if (take('"')) return true;
        if (at('\\')) {
            if (!escape()) return false;
        } else if (at('\n') || at('\r')) {
            return failAt(at_, "unterminated string: a line ends inside it");
        } else {
            const Utf8Step step = decodeUtf8(text_, at_);
            if (!step.codePoint) return failAt(at_, "a string must not hold " + found());
            if (*step.codePoint < 0x20) return failAt(at_, "a string must not hold " + found() + " unescaped");
            at_ += step.length;
        }
    }
}

/// Takes the escape that stands here; answers with the code point that it means.
std::optional<char32_t> JSONScanner::escape() {
    constexpr std::string_view letters = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    const std::size_t start = at_++;
    if (atEnd()) {
        failAt(at_, "unexpected end of the document after '\\'");
        return std::nullopt;
    }
    if (take('u')) return unicodeEscape(start);
    const std::size_t letter = letters.find(text_[at_]);
    if (letter == std::string_view::npos) {
        expected("one of \"\\/bfnrtu after '\\'");
        return std::nullopt;
    }
    ++at_;
    return static_cast<unsigned char>(meanings[letter]);
}

std::optional<char32_t> JSONScanner::unicodeEscape(std::size_t start) {
    const std::optional<char32_t> first = hexDigits();
    if (!first || !isSurrogate(*first)) return first;
    const auto unpaired = [&] {
        failAt(start, "unpaired surrogate \\u" + hexCode(*first, 4));
        return std::nullopt;
    };
    if (isLowSurrogate(*first) || !text_.substr(at_).starts_with("\\u")) return unpaired();
    at_ += 2;
    const std::optional<char32_t> second = hexDigits();
    if (!second) return std::nullopt;
    if (!isLowSurrogate(*second)) return unpaired();
    return 0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00);
}

/// The four digits that stand here.
std::optional<char32_t> JSONScanner::hexDigits() {
    char32_t number = 0;
    for (int i = 0; i < 4; ++i, ++at_) {
        if (atEnd() || !isHexDigit(text_[at_])) {
            expected("four hexadecimal digits after '\\u'");
            return std::nullopt;
        }
        number = number * 16 + hexValue(text_[at_]);
    }
    return number;
}

bool JSONScanner::atDigit() const { return !atEnd() && isDigit(text_[at_]); }

bool JSONScanner::take(char c) {
    if (!at(c)) return false;
    ++at_;
    return true;
}

void JSONScanner::skipBlanks() {
    while (!atEnd() && isBlank(text_[at_])) ++at_;
}

bool JSONScanner::failAt(std::size_t offset, std::string message) {
    fault_ = SyntaxFault{offset, std::move(message)};
    return false;
}

bool JSONScanner::expected(std::string_view what) {
    const std::string expectation = "expected " + std::string(what);
    if (atEnd()) return failAt(at_, "unexpected end of the document, " + expectation);
    return failAt(at_, expectation + ", found " + found());
}

/// What stands here, as people can read it.
std::string JSONScanner::found() const {
    constexpr std::size_t longestWord = 20;
    std::size_t wordEnd = at_;
    while (wordEnd < text_.size() && isInWord(text_[wordEnd])) ++wordEnd;
    if (wordEnd - at_ > longestWord) return "'" + std::string(text_.substr(at_, longestWord)) + "…'";
    if (wordEnd > at_) return "'" + std::string(text_.substr(at_, wordEnd - at_)) + "'";
    const Utf8Step step = decodeUtf8(text_, at_);
    if (!step.codePoint)
        return "a byte that is not UTF-8 (0x" + hexCode(static_cast<std::uint8_t>(text_[at_]), 2) + ")";
    const bool isControl = *step.codePoint < 0x20 || (*step.codePoint >= 0x7F && *step.codePoint < 0xA0);
    if (isControl) return "the character U+" + hexCode(*step.codePoint, 4);
    return "'" + std::string(text_.substr(at_, step.length)) + "'";
}

std::optional<SyntaxFault> findSyntaxFault(std::string_view text, std::size_t maximumDepth) {
    JSONScanner scanner(text, maximumDepth);
    while (scanner.next()) {
    }
    return scanner.fault();
}

std::string JSONScanner::unquoted(std::string_view raw) {
    if (raw.size() < 2) return {};
    JSONScanner scanner(raw.substr(1, raw.size() - 2));
    std::string text;
    for (const std::string_view inner = scanner.text_; !scanner.atEnd();) {
        const std::size_t escape = std::min(inner.find('\\', scanner.at_), inner.size());
        text += inner.substr(scanner.at_, escape - scanner.at_);
        scanner.at_ = escape;
        if (scanner.atEnd()) break;
        const std::optional<char32_t> meant = scanner.escape();
        if (!meant) break;
        appendUtf8(text, *meant);
    }
    return text;
}

}  // namespace tavrin
