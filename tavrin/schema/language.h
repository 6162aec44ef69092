// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "tavrin/platform/foundation/note.h"

// The document language as data: what the records say of themselves, in one form for all who explain it.

namespace tavrin {

/// What a key takes.
enum class ValueKind : unsigned char {
    text,
    boolean,
    integer,
    number,
    keyword,
    node,
    modifier,
    nodeRecord,  ///< a node of one kind, whose "type" does not matter
    part         ///< a record without a "type"
};

struct LanguageField {
    std::string_view key;
    ValueKind kind = ValueKind::text;
    bool isRequired = false;  ///< else the key may be left out or null
    bool isLossless = false;  ///< takes any scalar that converts, and expressions; else what it takes as it is
    bool isList = false;      ///< takes a list of that kind
    bool isNamed = false;     ///< takes an object of that kind, under names of the author's choice
    std::span<const std::string_view> words = {};  ///< of a keyword
    std::string_view record = {};                  ///< of a node record or part: its name
    Note note = {};
};

struct LanguageRecord {
    std::string_view name;                      ///< the "type"; of a record without one, what it is called elsewhere
    const std::type_info* structure = nullptr;  ///< the C++ record
    std::string_view summary;
    std::string_view version = {};  ///< the first version of the language that has it
    std::vector<LanguageField> fields = {};
};

struct Language {
    LanguageRecord document;
    std::vector<LanguageRecord> nodes;      ///< in the order in which they are registered
    std::vector<LanguageRecord> modifiers;  ///< the same
    std::vector<LanguageRecord> parts;      ///< records without a "type", which stand inside others
};

/// The language that this library reads. Made by the first call; thread-safe.
[[nodiscard]] const Language& documentLanguage();

/// Every record of the language, the document first.
[[nodiscard]] std::vector<const LanguageRecord*> allRecords(const Language& language);

}  // namespace tavrin
