// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/dsl/record.h"
#include "tavrin/json/json_outline.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/schema/language.h"

namespace tavrin {

/// A key and its value in a record.
struct WrittenMember {
    JSONOutline::Index value = 0;
    /// What the key takes; null for a key that the record has not.
    const LanguageField* field = nullptr;
    /// Whether the same key stands before it, and counts.
    bool isRepeated = false;
};

/// A document, a node, a modifier or a part of one where it is written.
struct WrittenRecord {
    JSONOutline::Index object = 0;
    const LanguageRecord* type = nullptr;
    /// Where its "type" is written; absent where it has none.
    std::optional<JSONOutline::Index> tag = std::nullopt;
    /// The named node that it stands in; 0 for the document itself.
    JSONOutline::Index entry = 0;
    /// Its properties, and then the keys that it has not or that are repeated, both as they are written.
    pool::Vector<WrittenMember> members = {};
    std::size_t propertyCount = 0;

    [[nodiscard]] std::span<const WrittenMember> properties() const { return std::span(members).first(propertyCount); }
    [[nodiscard]] std::span<const WrittenMember> others() const { return std::span(members).subspan(propertyCount); }
};

/// A word where only certain ones may stand, and none of them does.
struct WrongWord {
    JSONOutline::Index value = 0;
    std::span<const std::string_view> words = {};
};

/// A document as it is written: which of its objects are nodes and modifiers, and which key is which property. Knows
/// also what cannot be decoded, as far as it makes sense. Linear in the text, which must be valid JSON.
class WrittenDocument {
public:
    using Index = JSONOutline::Index;

    explicit WrittenDocument(std::string_view text);
    WrittenDocument(const WrittenDocument&) = delete;
    WrittenDocument& operator=(const WrittenDocument&) = delete;

    [[nodiscard]] const JSONOutline& outline() const { return outline_; }
    /// In pre-order; the first is the document itself.
    [[nodiscard]] const pool::Vector<WrittenRecord>& records() const { return records_; }
    /// The document itself; null where it is no object.
    [[nodiscard]] const WrittenRecord* root() const { return records_.empty() ? nullptr : &records_.front(); }
    [[nodiscard]] const std::vector<WrongWord>& wrongWords() const { return wrongWords_; }
    /// The named nodes, by name.
    [[nodiscard]] const std::map<std::string, Index, std::less<>>& entries() const { return entries_; }
    /// The record that begins with an object; null where there is none.
    [[nodiscard]] const WrittenRecord* recordAt(Index object) const;
    /// Whether drawing "main" comes to a named node.
    [[nodiscard]] bool isDrawn(Index entry) const;
    /// The named nodes that draw a given one, which is one of them: a reference from it to any of these is a circle.
    [[nodiscard]] std::set<Index> entriesThatDraw(Index entry) const;

private:
    struct Pending;
    /// From each named node to those that it draws.
    using References = std::map<Index, std::vector<Index>>;

    void read(const Pending& pending, std::vector<Pending>& more);
    void readMembers(WrittenRecord& record, std::vector<Pending>& more);
    void readValue(const LanguageField& field, Index value, Index entry, std::vector<Pending>& more);
    void findDrawn();

    JSONOutline outline_;
    pool::Vector<WrittenRecord> records_;
    pool::Vector<std::uint32_t> recordByObject_;  // 0 is none, else the record's index and 1
    std::vector<WrongWord> wrongWords_;
    std::map<std::string, Index, std::less<>> entries_;
    References references_;
    std::vector<bool> drawn_;  // by entry
};

/// Whether a record is one of some types: `isA<LinkNode>(record)`.
template <class... Records>
[[nodiscard]] bool isA(const WrittenRecord& record) {
    return ((*record.type->structure == typeid(Records)) || ...);
}

/// Whether a member of a record holds one of some properties: `isProperty<&LinkNode::url>(record, member)`.
template <auto... properties>
[[nodiscard]] bool isProperty(const WrittenRecord& record, const WrittenMember& member) {
    const auto isOne = [&]<class Record, class Value>(Value Record::*, std::string_view key) {
        return isA<Record>(record) && member.field->key == key;
    };
    return (isOne(properties, keyOf<properties>) || ...);
}

/// The member of a record that holds a property; null where it is left out.
[[nodiscard]] const WrittenMember* memberOf(const WrittenRecord& record, std::string_view key);

/// The same for one of some properties, which may be of several types of records; null for any other record too.
template <auto... properties>
[[nodiscard]] const WrittenMember* memberOf(const WrittenRecord& record) {
    const auto find = [&]<class Record, class Value>(Value Record::*, std::string_view key) {
        return isA<Record>(record) ? memberOf(record, key) : nullptr;
    };
    const WrittenMember* found = nullptr;
    static_cast<void>(((found = find(properties, keyOf<properties>)) || ...));
    return found;
}

}  // namespace tavrin
