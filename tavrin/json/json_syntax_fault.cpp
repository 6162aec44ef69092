// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "tavrin/json/json_place.h"
#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

bool isInWord(char c) { return isLetter(c) || isDigit(c) || c == '_'; }

std::string hexCode(std::uint32_t number, std::size_t digits) {
    std::string code(digits, '0');
    for (std::size_t i = digits; i-- > 0; number >>= 4) code[i] = "0123456789ABCDEF"[number & 0xF];
    return code;
}

/// Walks over JSON text; every step answers whether the text is still JSON, and the first that is not says why.
class SyntaxScanner {
public:
    SyntaxScanner(std::string_view text, std::size_t maximumDepth) : text_(text), maximumDepth_(maximumDepth) {}

    std::optional<SyntaxFault> run() {
        if (text_.starts_with("\xEF\xBB\xBF"))
            return SyntaxFault{0, "unexpected byte order mark at the start of the document"};
        skipBlanks();
        if (atEnd()) return SyntaxFault{at_, "the document is empty"};
        while (value() && afterValue()) {
        }
        return std::move(fault_);
    }

private:
    [[nodiscard]] bool atEnd() const { return at_ == text_.size(); }
    [[nodiscard]] bool at(char c) const { return !atEnd() && text_[at_] == c; }
    [[nodiscard]] bool atDigit() const { return !atEnd() && isDigit(text_[at_]); }

    bool take(char c) {
        if (!at(c)) return false;
        ++at_;
        return true;
    }

    void skipBlanks() { at_ = std::min(text_.find_first_not_of(" \t\n\r", at_), text_.size()); }

    bool failAt(std::size_t offset, std::string message) {
        fault_ = SyntaxFault{offset, std::move(message)};
        return false;
    }

    bool expected(std::string_view what) {
        const std::string expectation = "expected " + std::string(what);
        if (atEnd()) return failAt(at_, "unexpected end of the document, " + expectation);
        return failAt(at_, expectation + ", found " + found());
    }

    /// What stands here, as people can read it.
    [[nodiscard]] std::string found() const {
        constexpr std::size_t longestWord = 20;
        std::size_t wordEnd = at_;
        while (wordEnd < text_.size() && isInWord(text_[wordEnd])) ++wordEnd;
        if (wordEnd - at_ > longestWord) return "'" + std::string(text_.substr(at_, longestWord)) + "…'";
        if (wordEnd > at_) return "'" + std::string(text_.substr(at_, wordEnd - at_)) + "'";
        const Utf8Step step = decodeUtf8(text_, at_);
        if (!step.codePoint) return "a byte that is not UTF-8 (0x" + hexCode(byte(), 2) + ")";
        const bool isControl = *step.codePoint < 0x20 || (*step.codePoint >= 0x7F && *step.codePoint < 0xA0);
        if (isControl) return "the character U+" + hexCode(*step.codePoint, 4);
        return "'" + std::string(text_.substr(at_, step.length)) + "'";
    }

    [[nodiscard]] std::uint8_t byte() const { return static_cast<std::uint8_t>(text_[at_]); }

    /// Steps over a scalar, an empty container, or everything before the first scalar in it.
    bool value() {
        for (;;) {
            if (at('{')) {
                if (!open('}')) return false;
                if (take('}')) return close();
                if (!key("a key in quotes or '}'")) return false;
            } else if (at('[')) {
                if (!open(']')) return false;
                if (take(']')) return close();
            } else {
                return scalar();
            }
        }
    }

    bool open(char closing) {
        if (closings_.size() == maximumDepth_)
            return failAt(at_, "nested deeper than " + toText(maximumDepth_) + " levels");
        closings_.push_back(closing);
        ++at_;
        skipBlanks();
        return true;
    }

    bool close() {
        closings_.pop_back();
        return true;
    }

    bool key(std::string_view what) {
        if (!at('"')) return expected(what);
        if (!string()) return false;
        skipBlanks();
        if (!take(':')) return expected("':' after a key");
        skipBlanks();
        return true;
    }

    /// Goes on to the next value; false at the end of the document as well.
    bool afterValue() {
        for (skipBlanks(); !closings_.empty(); skipBlanks()) {
            const bool inObject = closings_.back() == '}';
            if (take(',')) {
                skipBlanks();
                return !inObject || key("a key in quotes after ','");
            }
            if (!take(closings_.back()))
                return expected(inObject ? "',' or '}' after a value" : "',' or ']' after a value");
            close();
        }
        return atEnd() ? false : expected("the end of the document");
    }

    bool scalar() {
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

    bool digits(std::string_view where) {
        if (!atDigit()) return expected("a digit " + std::string(where));
        while (atDigit()) ++at_;
        return true;
    }

    bool number() {
        const std::size_t start = at_;
        take('-');
        if (at('0')) {
            ++at_;
            if (atDigit()) return failAt(start, "a number must not start with 0");
        } else if (!digits("after '-'")) {
            return false;
        }
        if (take('.') && !digits("after '.'")) return false;
        if (take('e') || take('E')) {
            if (!take('+')) take('-');
            if (!digits("in an exponent")) return false;
        }
        const std::optional<double> number = doubleFromText(text_.substr(start, at_ - start));
        return number && std::isfinite(*number) ? true : failAt(start, "number is too large");
    }

    bool string() {
        const std::size_t start = at_;
        for (++at_; !atEnd();) {
            if (take('"')) return true;
            if (at('\\')) {
                if (!escape()) return false;
            } else if (byte() < 0x20) {
                return failAt(at_, at('\n') || at('\r') ? "unterminated string: a line ends inside it"
                                                        : "a string must not hold " + found() + " unescaped");
            } else {
                const Utf8Step step = decodeUtf8(text_, at_);
                if (!step.codePoint) return failAt(at_, "a string must not hold " + found());
                at_ += step.length;
            }
        }
        return failAt(start, "unterminated string");
    }

    bool escape() {
        constexpr std::string_view letters = "\"\\/bfnrt";
        const std::size_t start = at_;
        ++at_;
        if (atEnd()) return failAt(at_, "unexpected end of the document after '\\'");
        if (at('u')) return unicodeEscape(start);
        if (letters.find(text_[at_]) == std::string_view::npos) return expected("one of \"\\/bfnrtu after '\\'");
        ++at_;
        return true;
    }

    bool unicodeEscape(std::size_t start) {
        const std::optional<std::uint32_t> first = hexDigits();
        if (!first) return false;
        if (*first < 0xD800 || *first > 0xDFFF) return true;
        const std::string unpaired = "unpaired surrogate \\u" + hexCode(*first, 4);
        if (*first > 0xDBFF || !text_.substr(at_).starts_with("\\u")) return failAt(start, unpaired);
        ++at_;
        const std::optional<std::uint32_t> second = hexDigits();
        if (!second) return false;
        return *second >= 0xDC00 && *second <= 0xDFFF ? true : failAt(start, unpaired);
    }

    /// The four digits behind the "u" that stands here.
    std::optional<std::uint32_t> hexDigits() {
        std::uint32_t number = 0;
        ++at_;
        for (int i = 0; i < 4; ++i, ++at_) {
            if (atEnd() || !isHexDigit(text_[at_])) {
                expected("four hexadecimal digits after '\\u'");
                return std::nullopt;
            }
            const char c = text_[at_];
            number = number * 16 + static_cast<std::uint32_t>(isDigit(c) ? c - '0' : (c | 0x20) - 'a' + 10);
        }
        return number;
    }

    std::string_view text_;
    std::size_t maximumDepth_;
    std::size_t at_ = 0;
    std::vector<char> closings_;  ///< what ends the open objects and arrays
    std::optional<SyntaxFault> fault_;
};

}  // namespace

std::optional<SyntaxFault> findSyntaxFault(std::string_view text, std::size_t maximumDepth) {
    return SyntaxScanner(text, maximumDepth).run();
}

}  // namespace tavrin
