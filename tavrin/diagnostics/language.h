#pragma once

#include <span>
#include <string_view>
#include <vector>

// The document language as data, from the records' own lists of fields.

namespace tavrin::diagnostics {

/// What a key takes.
enum class ValueKind : unsigned char { text, boolean, integer, number, keyword, node, modifier, record };

struct LanguageField {
    std::string_view key;
    ValueKind kind = ValueKind::text;
    bool isRequired = false;                       ///< else the key may be left out or null
    bool isLossless = false;                       ///< takes any scalar that converts, and expressions
    bool isList = false;                           ///< takes a list of that kind
    bool isNamed = false;                          ///< takes an object of that kind, under names of the author's choice
    std::span<const std::string_view> words = {};  ///< of a keyword
    std::string_view record = {};                  ///< of a record: its name
};

struct LanguageRecord {
    std::string_view name;          ///< the "type"; of a record without one, what it is called elsewhere
    std::string_view version = {};  ///< the first version of the language that has it
    std::vector<LanguageField> fields = {};
};

struct Language {
    LanguageRecord document;
    std::vector<LanguageRecord> nodes;
    std::vector<LanguageRecord> modifiers;
    std::vector<LanguageRecord> parts;  ///< records without a "type", which stand inside others
};

/// The language that this library reads. Made by the first call; thread-safe.
[[nodiscard]] const Language& documentLanguage();

}  // namespace tavrin::diagnostics
