// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/diagnostics/diagnostic.h"
#include "tavrin/diagnostics/rule.h"
#include "tavrin/json/json_outline.h"

namespace tavrin {

/// Gathers what rules find in a document and its model.
class Findings {
public:
    using Index = JSONOutline::Index;

    /// More than `maximum` findings are dropped.
    explicit Findings(std::size_t maximum) : maximum_(maximum) {}

    /// Notes something about a value of a text. The fix may be added to what is returned, which is valid until the
    /// next call.
    Diagnostic& add(Rule rule, const JSONOutline& outline, Index value, std::string message,
                    TextRole role = TextRole::document);
    /// The same, about the key of a member.
    Diagnostic& addAtKey(Rule rule, const JSONOutline& outline, Index member, std::string message);
    /// Notes something whose place is not known.
    Diagnostic& add(Rule rule, std::string message);

    [[nodiscard]] std::vector<Diagnostic>& all() { return diagnostics_; }
    [[nodiscard]] bool isFull() const { return diagnostics_.size() >= maximum_; }
    /// How many were dropped.
    [[nodiscard]] std::size_t dropped() const { return dropped_; }

    /// All findings with their lines and columns, in the order of their places: those without one first, and the
    /// document's before the model's.
    [[nodiscard]] std::vector<Diagnostic> take(std::string_view document, std::string_view model);

private:
    std::size_t maximum_;
    std::size_t dropped_ = 0;
    std::vector<Diagnostic> diagnostics_;
    Diagnostic spare_;
};

/// A stretch of bytes; `Findings::take` works out its lines and columns.
[[nodiscard]] TextRange bytes(std::size_t begin, std::size_t end);

/// Where a value is written; of an array or object its first byte.
[[nodiscard]] TextRange rangeOf(const JSONOutline& outline, JSONOutline::Index value);
/// Where the key of a member is written.
[[nodiscard]] TextRange keyRangeOf(const JSONOutline& outline, JSONOutline::Index member);

/// The edit that puts a JSON string in the place of a value.
[[nodiscard]] TextEdit replaceByString(const JSONOutline& outline, JSONOutline::Index value, std::string_view text);

/// A text as a JSON string.
[[nodiscard]] std::string inQuotes(std::string_view text);

}  // namespace tavrin
