// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/json/json_place.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/placed_error.h"

namespace tavrin {

/// How bad it is.
enum class Severity : unsigned char {
    error,    ///< the document is refused
    warning,  ///< legal, but surely meant otherwise
    note,     ///< worth knowing
};

/// A stretch of a text, from the place of its first byte to the one behind its last.
struct TextRange {
    TextPlace begin;
    TextPlace end;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// Puts `text` in the place of a stretch of a text.
struct TextEdit {
    TextRange range;
    std::string text;

    friend bool operator==(const TextEdit&, const TextEdit&) = default;
};

/// One thing that is wrong, or doubtful, in a document or its model.
struct Diagnostic {
    Severity severity = Severity::warning;
    /// What kind of thing, a word that never changes: one of `diagnosticRules()`.
    std::string_view code = {};
    /// One sentence for people.
    std::string message = {};
    /// Which of the two texts it is about.
    TextRole role = TextRole::document;
    /// The way to the value in question; empty where none is known.
    CodingPath path = {};
    /// Where that is written; absent where no place is known.
    std::optional<TextRange> range = std::nullopt;
    /// What may be put in its place safely, all of it or nothing; empty where there is no such thing.
    std::vector<TextEdit> fix = {};
    /// What loading or drawing threw, or would throw next; null for what is no error.
    std::exception_ptr cause = nullptr;
    /// Whether it was found by going on after another error, which loading ends at.
    bool isFurther = false;
};

}  // namespace tavrin
