// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// Where and why a text is not JSON.
struct SyntaxFault {
    std::size_t offset = 0;  ///< in bytes, at most the text's size
    std::string message;     ///< "expected ',' or '}' after a value, found 'x'"

    friend bool operator==(const SyntaxFault&, const SyntaxFault&) = default;
};

/// Reads a text once, from event to event: `while (scanner.next()) …`. Strict: it ends at the first reason why the text
/// is not one RFC 8259 JSON value in UTF-8. Also refused: a byte order mark, a lone surrogate, a number that overflows
/// to infinity. Linear in the text, which must live as long.
class JSONScanner {
public:
    enum class Event : unsigned char { beginObject, beginArray, end, key, scalar };

    /// Also refuses containers nested deeper than `maximumDepth`.
    explicit JSONScanner(std::string_view text, std::size_t maximumDepth = std::string_view::npos)
        : text_(text), maximumDepth_(maximumDepth) {}

    /// Goes on to the next event; false at the end of the text and at its fault.
    bool next();
    [[nodiscard]] const std::optional<SyntaxFault>& fault() const { return fault_; }

    [[nodiscard]] Event event() const { return event_; }
    // Where it is written: a bracket, or a key or scalar with its quotes.
    [[nodiscard]] std::size_t begin() const { return begin_; }
    [[nodiscard]] std::size_t end() const { return at_; }
    [[nodiscard]] std::string_view raw() const { return text_.substr(begin_, at_ - begin_); }

    /// What a string means that is written without fault, quotes included.
    [[nodiscard]] static std::string unquoted(std::string_view raw);

private:
    /// What was met last, and so what may come next.
    enum class Behind : unsigned char { nothing, brace, bracket, key, value };

    [[nodiscard]] bool atEnd() const { return at_ == text_.size(); }
    [[nodiscard]] bool at(char c) const { return !atEnd() && text_[at_] == c; }
    [[nodiscard]] bool atDigit() const;
    bool take(char c);
    void skipBlanks();

    bool failAt(std::size_t offset, std::string message);
    bool expected(std::string_view what);
    [[nodiscard]] std::string found() const;

    // Each answers whether the text is still JSON.
    bool value();
    bool open(Event event, char closing, Behind behind);
    bool close();
    bool key(std::string_view what);
    bool afterValue();
    bool scalar();
    bool number();
    bool digits(std::string_view where);
    bool string();
    std::optional<char32_t> escape();
    std::optional<char32_t> unicodeEscape(std::size_t start);
    std::optional<char32_t> hexDigits();

    std::string_view text_;
    std::size_t maximumDepth_;
    std::size_t begin_ = 0;
    std::size_t at_ = 0;
    Event event_ = Event::scalar;
    Behind behind_ = Behind::nothing;
    std::vector<char> closings_;  // what ends the open objects and arrays
    std::optional<SyntaxFault> fault_;
};

/// The first reason why `text` is not JSON; none when it is. For the cold path, when a fast parser has already refused
/// the text.
[[nodiscard]] std::optional<SyntaxFault> findSyntaxFault(std::string_view text, std::size_t maximumDepth);

}  // namespace tavrin
