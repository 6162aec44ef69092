// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/findings.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

/// Goes through a text once, from place to place.
class PlaceFinder {
public:
    explicit PlaceFinder(std::string_view text) : text_(text) {}

    /// Goes on to an offset; never back.
    TextPlace advance(std::size_t offset) {
        offset = std::min(offset, text_.size());
        while (at_.offset < offset) {
            const bool endsLine = text_[at_.offset] == '\n';
            at_.offset += std::min(decodeUtf8(text_, at_.offset).length, offset - at_.offset);
            at_.column = endsLine ? 1 : at_.column + 1;
            at_.line += endsLine ? 1 : 0;
        }
        return at_;
    }

private:
    std::string_view text_;
    TextPlace at_;
};

/// Works out lines and columns of all places in one text.
void place(std::vector<Diagnostic>& diagnostics, TextRole role, std::string_view text) {
    std::vector<TextPlace*> places;
    const auto add = [&](TextRange& range) { places.insert(places.end(), {&range.begin, &range.end}); };
    for (Diagnostic& diagnostic : diagnostics) {
        if (diagnostic.role != role) continue;
        if (diagnostic.range) add(*diagnostic.range);
        for (TextEdit& edit : diagnostic.fix) add(edit.range);
    }
    std::ranges::sort(places, {}, &TextPlace::offset);
    PlaceFinder finder(text);
    for (TextPlace* place : places) *place = finder.advance(place->offset);
}

auto order(const Diagnostic& diagnostic) {
    const std::size_t offset = diagnostic.range ? diagnostic.range->begin.offset : 0;
    return std::tuple(diagnostic.role, diagnostic.range.has_value(), offset, diagnostic.severity);
}

}  // namespace

Diagnostic& Findings::add(Rule rule, std::string message) {
    if (isFull()) ++dropped_;
    Diagnostic& added = isFull() ? spare_ : diagnostics_.emplace_back();
    added = {.severity = info(rule).severity, .code = info(rule).code, .message = std::move(message)};
    return added;
}

Diagnostic& Findings::add(Rule rule, const JSONOutline& outline, Index value, std::string message, TextRole role) {
    Diagnostic& added = add(rule, std::move(message));
    if (&added == &spare_) return added;
    added.role = role;
    added.path = outline.path(value);
    added.range = rangeOf(outline, value);
    return added;
}

Diagnostic& Findings::addAtKey(Rule rule, const JSONOutline& outline, Index member, std::string message) {
    Diagnostic& added = add(rule, outline, member, std::move(message));
    added.range = keyRangeOf(outline, member);
    return added;
}

std::vector<Diagnostic> Findings::take(std::string_view document, std::string_view model) {
    place(diagnostics_, TextRole::document, document);
    place(diagnostics_, TextRole::model, model);
    std::ranges::stable_sort(diagnostics_, {}, order);
    return std::move(diagnostics_);
}

std::string inQuotes(std::string_view text) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.value(text);
    return std::move(writer).text();
}

TextRange bytes(std::size_t begin, std::size_t end) {
    TextRange range;
    range.begin.offset = begin;
    range.end.offset = end;
    return range;
}

TextRange rangeOf(const JSONOutline& outline, JSONOutline::Index value) {
    const JSONOutline::Value& place = outline[value];
    const bool isContainer = outline.isObject(value) || outline.isArray(value);
    return bytes(place.begin, isContainer ? place.begin + 1 : place.end);
}

TextRange keyRangeOf(const JSONOutline& outline, JSONOutline::Index member) {
    return bytes(outline[member].keyBegin, outline[member].keyEnd);
}

TextEdit replaceByString(const JSONOutline& outline, JSONOutline::Index value, std::string_view text) {
    return {rangeOf(outline, value), inQuotes(text)};
}

}  // namespace tavrin
