#include "tavrin/json/json_text.h"

#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>

#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_place.h"
#include "tavrin/platform/foundation/number_text.h"

namespace tavrin {
namespace {

using Tape = simdjson::dom::document;

constexpr std::uint64_t payloadMask = 0x00FF'FFFF'FFFF'FFFF;

char typeAt(const Tape& tape, std::size_t index) { return static_cast<char>(tape.tape[index] >> 56); }
std::uint64_t payloadAt(const Tape& tape, std::size_t index) { return tape.tape[index] & payloadMask; }

std::size_t indexAfter(const Tape& tape, std::size_t index) {
    switch (typeAt(tape, index)) {
        case '[':
        case '{': return static_cast<std::uint32_t>(tape.tape[index]);
        case 'l':
        case 'u':
        case 'd': return index + 2;
        default: return index + 1;
    }
}

std::string_view stringAt(const Tape& tape, std::size_t index) {
    const std::uint8_t* stored = tape.string_buf.get() + payloadAt(tape, index);
    std::uint32_t length = 0;
    std::memcpy(&length, stored, sizeof length);
    return {reinterpret_cast<const char*>(stored + sizeof length), length};
}

template <class Number>
Number numberAt(const Tape& tape, std::size_t index) {
    Number number;
    std::memcpy(&number, &tape.tape[index + 1], sizeof number);
    return number;
}

/// What a number written with a point or an exponent is: an integer when its value is one.
JSONKind kindOfFloating(double value) {
    if (value != std::trunc(value)) return JSONKind::floating;
    // A whole number below 64 bits may have been rounded to -2^63; that very number is written without a point.
    if (value > -0x1p63 && value < 0x1p63) return JSONKind::integer;
    if (value >= 0x1p63 && value < 0x1p64) return JSONKind::unsigned_;
    return JSONKind::floating;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool fitsIn64Bits(std::string_view digits, bool isNegative) {
    const std::optional<std::uint64_t> magnitude = intFromText<std::uint64_t>(digits);
    return magnitude && (!isNegative || *magnitude <= std::uint64_t{1} << 63);
}

/// The parser refuses whole numbers beyond 64 bits, which are JSON all the same: marks each as a floating one. Returns
/// none when there is no such number.
std::optional<std::string> withWideIntegersAsFloating(std::string_view text) {
    std::string marked;
    std::size_t copied = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (inString) {
            if (text[i] == '\\') {
                ++i;
            } else if (text[i] == '"') {
                inString = false;
            }
        } else if (text[i] == '"') {
            inString = true;
        } else if (isDigit(text[i])) {
            const std::size_t begin = i;
            while (i < text.size() && isDigit(text[i])) ++i;
            const bool isWhole = i == text.size() || (text[i] != '.' && text[i] != 'e' && text[i] != 'E');
            if (isWhole && !fitsIn64Bits(text.substr(begin, i - begin), begin > 0 && text[begin - 1] == '-')) {
                marked.append(text, copied, i - copied).append("e0");
                copied = i;
            }
            if (!isWhole) {
                while (i < text.size() && (isDigit(text[i]) || std::strchr(".eE+-", text[i]) != nullptr)) ++i;
            }
            --i;
        }
    }
    if (copied == 0) return std::nullopt;
    return marked.append(text, copied);
}

[[noreturn]] void refuse(std::string_view text, const char* fallback) {
    const std::optional<SyntaxFault> fault = findSyntaxFault(text, JSONText::maximumDepth);
    DecodingError error(DecodingError::Kind::dataCorrupted, {},
                        "The given data was not valid JSON: " + (fault ? fault->message : std::string(fallback)));
    if (fault) error.offset = fault->offset;
    throw error;
}

}  // namespace

std::string_view describe(JSONKind kind) {
    switch (kind) {
        case JSONKind::null: return "null";
        case JSONKind::boolean: return "a boolean";
        case JSONKind::integer:
        case JSONKind::unsigned_:
        case JSONKind::floating: return "a number";
        case JSONKind::string: return "a string";
        case JSONKind::array: return "an array";
        case JSONKind::object: return "an object";
    }
    return "a value";
}

JSONKind JSONElement::kind() const {
    switch (typeAt(*document_, index_)) {
        case 't':
        case 'f': return JSONKind::boolean;
        case 'l': return JSONKind::integer;
        case 'u': return JSONKind::unsigned_;
        case 'd': return kindOfFloating(numberAt<double>(*document_, index_));
        case '"': return JSONKind::string;
        case '[': return JSONKind::array;
        case '{': return JSONKind::object;
        default: return JSONKind::null;
    }
}

bool JSONElement::boolean() const { return typeAt(*document_, index_) == 't'; }

std::int64_t JSONElement::integer() const {
    if (typeAt(*document_, index_) == 'd') return static_cast<std::int64_t>(numberAt<double>(*document_, index_));
    return numberAt<std::int64_t>(*document_, index_);
}

std::uint64_t JSONElement::unsignedInteger() const {
    if (typeAt(*document_, index_) == 'd') return static_cast<std::uint64_t>(numberAt<double>(*document_, index_));
    return numberAt<std::uint64_t>(*document_, index_);
}

double JSONElement::floating() const { return numberAt<double>(*document_, index_); }

std::string_view JSONElement::string() const { return stringAt(*document_, index_); }

std::size_t JSONElement::size() const { return payloadAt(*document_, index_) >> 32; }

void JSONElement::findMembers(std::span<const std::string_view> keys, JSONElement* found) const {
    std::size_t missing = keys.size();
    Walk walk(*this);
    while (missing > 0 && walk.next()) {
        const std::string_view key = walk.key();
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (keys[i] != key) continue;
            if (!found[i].exists()) {
                found[i] = walk.value();
                --missing;
            }
            break;
        }
    }
}

JSONElement::Walk::Walk(const JSONElement& container)
    : value_(container),
      next_(container.index_ + 1),
      end_(indexAfter(*container.document_, container.index_) - 1),
      isObject_(typeAt(*container.document_, container.index_) == '{') {}

bool JSONElement::Walk::next() {
    if (next_ == end_) return false;
    if (isObject_) key_ = next_++;
    value_.index_ = next_;
    next_ = indexAfter(*value_.document_, next_);
    return true;
}

std::string_view JSONElement::Walk::key() const { return stringAt(*value_.document_, key_); }

struct JSONText::Parser {
    simdjson::dom::parser parser;
    std::string padded;

    simdjson::error_code parse(std::string_view text) {
        padded.reserve(text.size() + simdjson::SIMDJSON_PADDING);
        padded.assign(text);
        if (parser.capacity() < text.size() || parser.max_depth() != maximumDepth) {
            const std::size_t capacity = std::max<std::size_t>(text.size(), 16 * 1024);
            if (const simdjson::error_code error = parser.allocate(capacity, maximumDepth)) return error;
        }
        return parser.parse(padded.data(), padded.size(), false).error();
    }
};

// Parsing needs working memory; each thread keeps what its last text left behind, unless that text was huge.
std::unique_ptr<JSONText::Parser>& JSONText::spareParser() {
    thread_local std::unique_ptr<Parser> spare;
    return spare;
}

JSONText::JSONText(std::string_view text)
    : parser_(spareParser() ? std::move(spareParser()) : std::make_unique<Parser>()) {
    simdjson::error_code error = parser_->parse(text);
    if (error == simdjson::NUMBER_ERROR) {
        if (const std::optional<std::string> marked = withWideIntegersAsFloating(text)) error = parser_->parse(*marked);
    }
    if (error != simdjson::SUCCESS) refuse(text, simdjson::error_message(error));
}

JSONText::~JSONText() {
    constexpr std::size_t largestKept = 1024 * 1024;
    if (parser_ && parser_->parser.capacity() <= largestKept) spareParser() = std::move(parser_);
}

JSONElement JSONText::root() const { return {&parser_->parser.doc, 1}; }

}  // namespace tavrin
