// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/json_writer.h"

#include <algorithm>
#include <cmath>

#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

constexpr std::size_t longestJoinedArray = 80;
constexpr std::size_t pieceBytes = 64 * 1024;

void appendEscaped(std::string& out, char control) {
    constexpr std::string_view letters = "\"\\bfnrt";
    constexpr std::string_view meanings = "\"\\\b\f\n\r\t";
    constexpr std::string_view hex = "0123456789abcdef";
    const auto code = static_cast<unsigned>(control);
    if (const std::size_t letter = meanings.find(control); letter < letters.size())
        out.append({'\\', letters[letter]});
    else
        out.append("\\u00").append({hex[code >> 4], hex[code & 0xF]});
}

bool needsEscape(char c) { return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20; }

}  // namespace

JSONWriter& JSONWriter::key(std::string_view key) {
    if (afterKey_ || open_.empty() || open_.back().isArray) preconditionFailure("JSONWriter: a key outside an object");
    beginElement(true);
    string(key);
    text_ += style_ == Style::pretty ? ": " : ":";
    afterKey_ = true;
    return *this;
}

JSONWriter& JSONWriter::value(std::string_view text) {
    beginValue(true);
    string(text);
    return *this;
}

JSONWriter& JSONWriter::value(double number) {
    if (std::isnan(number)) return value("nan");
    if (std::isinf(number)) return value(number > 0 ? "infinity" : "-infinity");
    beginValue(true);
    appendText(text_, number);
    if (text_.ends_with(".0")) text_.resize(text_.size() - 2);
    return *this;
}

JSONWriter& JSONWriter::value(std::int64_t number) { return literal(toText(number)); }
JSONWriter& JSONWriter::value(std::uint64_t number) { return literal(toText(number)); }
JSONWriter& JSONWriter::value(bool truth) { return literal(truth ? "true" : "false"); }
JSONWriter& JSONWriter::value(std::nullptr_t) { return literal("null"); }

JSONWriter& JSONWriter::literal(std::string_view text) {
    beginValue(true);
    text_ += text;
    return *this;
}

void JSONWriter::beginValue(bool isScalar) {
    if (afterKey_) {
        afterKey_ = false;
    } else if (open_.empty()) {
        if (size() > 0) preconditionFailure("JSONWriter: a second value at the root");
    } else {
        if (!open_.back().isArray) preconditionFailure("JSONWriter: a value without a key in an object");
        beginElement(isScalar);
    }
}

void JSONWriter::beginElement(bool isScalar) {
    Container& container = open_.back();
    if (!container.isEmpty) text_ += ',';
    container.isEmpty = false;
    container.onlyScalars &= isScalar;
    newLine();
}

JSONWriter& JSONWriter::begin(char bracket, bool isArray) {
    beginValue(false);
    open_.push_back({.isArray = isArray, .start = size()});
    text_ += bracket;
    return *this;
}

JSONWriter& JSONWriter::end(char bracket, bool isArray) {
    if (afterKey_ || open_.empty() || open_.back().isArray != isArray)
        preconditionFailure("JSONWriter: an end without its begin or after a key");
    const Container ended = open_.back();
    open_.pop_back();
    if (!ended.isEmpty) newLine();
    text_ += bracket;
    if (style_ == Style::pretty && isArray && ended.onlyScalars) joinLines(ended.start - gone_);
    if (sink_) sendOn();
    return *this;
}

void JSONWriter::newLine() {
    if (style_ == Style::compact) return;
    text_ += '\n';
    // Deeper lines stay where they are: else the blanks of a deep tree outweigh everything else.
    constexpr std::size_t deepestIndented = 64;
    text_.append(2 * std::min(open_.size(), deepestIndented), ' ');
}

void JSONWriter::string(std::string_view text) {
    text_ += '"';
    for (std::size_t at = 0; at < text.size();) {
        if (needsEscape(text[at])) {
            appendEscaped(text_, text[at]);
            ++at;
            continue;
        }
        const std::size_t start = at;
        while (at < text.size() && !needsEscape(text[at])) ++at;
        text_ += sanitizedUtf8(text.substr(start, at - start));
    }
    text_ += '"';
}

/// Puts the array that starts there and ends the text on one line if it is short. Scalars hold no line breaks.
void JSONWriter::joinLines(std::size_t start) {
    std::string joined;
    for (std::size_t at = start; at < text_.size();) {
        const std::size_t line = std::min(text_.find('\n', at), text_.size());
        joined.append(text_, at, line - at);
        if (joined.size() > longestJoinedArray) return;
        if (joined.ends_with(',')) joined += ' ';
        at = std::min(text_.find_first_not_of(" \n", line), text_.size());
    }
    text_.replace(start, std::string::npos, joined);
}

/// What may still be joined to one line stays.
void JSONWriter::sendOn() {
    if (!open_.empty() && (text_.size() < pieceBytes || (open_.back().isArray && open_.back().onlyScalars))) return;
    sink_(text_);
    gone_ += text_.size();
    text_.clear();
}

}  // namespace tavrin
