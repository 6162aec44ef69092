// SPDX-License-Identifier: MIT
#include "tavrin/json/json_text.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include <simdjson.h>

#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_scan.h"
#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {
namespace {

/// Whether a scalar is a whole number beyond 64 bits.
bool isWideInteger(std::string_view scalar) {
    const bool isNegative = scalar.starts_with('-');
    const std::string_view digits = scalar.substr(isNegative ? 1 : 0);
    if (digits.find_first_not_of("0123456789") != std::string_view::npos) return false;
    const std::optional<std::uint64_t> magnitude = intFromText<std::uint64_t>(digits);
    return !magnitude || (isNegative && *magnitude > std::uint64_t{1} << 63);
}

/// The parser refuses whole numbers beyond 64 bits, which are JSON all the same: marks each as a floating one. Returns
/// none when there is no such number.
std::optional<std::string> withWideIntegersAsFloating(std::string_view text) {
    std::string marked;
    std::size_t copied = 0;
    for (JSONScanner scanner(text); scanner.next();) {
        if (scanner.event() != JSONScanner::Event::scalar || !isWideInteger(scanner.raw())) continue;
        marked.append(text, copied, scanner.end() - copied).append("e0");
        copied = scanner.end();
    }
    if (copied == 0) return std::nullopt;
    return marked.append(text, copied);
}

/// What parsing a text takes: its padded copy, its strings, and for each value the parser's cells and index.
std::size_t parsedBytes(std::string_view text) {
    constexpr std::size_t bytesForValue = 24;
    constexpr std::size_t notWorthCounting = 1 << 16;
    const auto begins = [](char c) { return c == ',' || c == ':' || c == '[' || c == '{'; };
    const std::size_t values = text.size() < notWorthCounting
                                   ? text.size() / 2
                                   : static_cast<std::size_t>(std::count_if(text.begin(), text.end(), begins));
    return 2 * text.size() + bytesForValue * values;
}

[[noreturn]] void refuse(std::string_view text, std::size_t depth, const char* fallback) {
    const std::optional<SyntaxFault> fault = findSyntaxFault(text, depth);
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

JSONKind JSONElement::kindOfFloating() const {
    const auto value = number<double>();
    if (value != std::trunc(value)) return JSONKind::floating;
    // -2^63 itself is left out: whole numbers just below it round to it.
    if (value > -0x1p63 && value < 0x1p63) return JSONKind::integer;
    if (value >= 0x1p63 && value < 0x1p64) return JSONKind::unsigned_;
    return JSONKind::floating;
}

std::size_t JSONElement::countedSize() const {
    std::size_t size = 0;
    for (Walk walk(*this); walk.next();) ++size;
    return size;
}

struct JSONText::Parser {
    simdjson::dom::parser parser;
    std::string padded;
    JSONTape tape;
    HeldBytes held;

    /// Parses a text that may hold whole numbers of any length.
    simdjson::error_code parse(std::string_view text, std::size_t depth) {
        simdjson::error_code error = parseMarked(text, depth);
        if (error == simdjson::NUMBER_ERROR) {
            if (const std::optional<std::string> marked = withWideIntegersAsFloating(text))
                error = parseMarked(*marked, depth);
        }
        return error;
    }

private:
    simdjson::error_code parseMarked(std::string_view text, std::size_t depth) {
        held = HeldBytes(parsedBytes(text));
        padded.reserve(text.size() + simdjson::SIMDJSON_PADDING);
        padded.assign(text);
        const std::size_t depthBound = depth + 1;  // the first depth that is refused
        if (parser.capacity() < text.size() || parser.max_depth() != depthBound) {
            const std::size_t capacity = std::max<std::size_t>(text.size(), 16 * 1024);
            if (const simdjson::error_code error = parser.allocate(capacity, depthBound)) return error;
        }
        const simdjson::error_code error = parser.parse(padded.data(), padded.size(), false).error();
        tape = {parser.doc.tape.get(), reinterpret_cast<const char*>(parser.doc.string_buf.get())};
        return error;
    }
};

// Parsing needs working memory; each thread keeps what its last text left behind, unless that text was large.
std::unique_ptr<JSONText::Parser>& JSONText::spareParser() {
    thread_local std::unique_ptr<Parser> spare;
    return spare;
}

JSONText::JSONText(std::string_view text, std::size_t depth)
    : parser_(spareParser() ? std::move(spareParser()) : std::make_unique<Parser>()),
      depth_(std::min(depth, maximumDepth)) {
    // Working memory grows with the depth, so no more is asked for than most texts need.
    simdjson::error_code error = parser_->parse(text, depth_);
    if (error == simdjson::DEPTH_ERROR && depth > maximumDepth) {
        depth_ = depth;
        error = parser_->parse(text, depth_);
    }
    if (error != simdjson::SUCCESS) refuse(text, depth, simdjson::error_message(error));
}

JSONText::~JSONText() {
    constexpr std::size_t largestKept = 2 * 1024 * 1024;  // takes fourteen times as much to parse
    if (!parser_) return;
    parser_->held = {};
    if (parser_->parser.capacity() <= largestKept && parser_->parser.max_depth() <= maximumDepth + 1)
        spareParser() = std::move(parser_);
}

JSONElement JSONText::root() const { return {&parser_->tape, 1}; }

}  // namespace tavrin
