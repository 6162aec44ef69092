// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/note.h"

namespace tavrin {

/// One field of a record: the key it is written under, the member that holds it and, where authors write the record, a
/// note for them.
///
/// A record lists its fields once, in declaration order, as `static constexpr Fields fields{Field{…}, …}`;
/// decoding, encoding, binding, equality and printing are loops over that list.
template <class Record, class Value>
struct Field {
    std::string_view key;
    Value Record::*member;
    Note note = {};
};
template <class Record, class Value>
Field(std::string_view, Value Record::*) -> Field<Record, Value>;
template <class Record, class Value>
Field(std::string_view, Value Record::*, Note) -> Field<Record, Value>;

/// One of a list's fields, at its place.
template <std::size_t index, class Listed>
struct FieldAt {
    Listed field;
};

template <class Indices, class... Listed>
struct FieldsByIndex;
template <std::size_t... indices, class... Listed>
struct FieldsByIndex<std::index_sequence<indices...>, Listed...> : FieldAt<indices, Listed>... {
    template <class Use>
    constexpr decltype(auto) apply(Use&& use) const {
        return use(static_cast<const FieldAt<indices, Listed>&>(*this).field...);
    }
};

/// The fields of a record. (A `std::tuple` would do, but makes each source that sees a record's header compile several
/// times as long.)
template <class... Listed>
struct Fields : FieldsByIndex<std::index_sequence_for<Listed...>, Listed...> {
    static constexpr std::size_t size = sizeof...(Listed);

    constexpr explicit Fields(Listed... listed)
        : FieldsByIndex<std::index_sequence_for<Listed...>, Listed...>{{listed}...} {}

    template <std::size_t index>
    [[nodiscard]] constexpr const auto& at() const {
        return fieldAt<index>(*this);
    }

private:
    template <std::size_t index, class One>
    static constexpr const One& fieldAt(const FieldAt<index, One>& at) {
        return at.field;
    }
};

/// Calls `visit(field)` for each field of `Record`, in declaration order.
template <class Record, class Visit>
constexpr void forEachField(Visit&& visit) {
    Record::fields.apply([&](const auto&... field) { (visit(field), ...); });
}

/// Whether two records agree in every listed field.
template <class Record>
[[nodiscard]] bool fieldsEqual(const Record& a, const Record& b) {
    return Record::fields.apply([&](const auto&... field) { return ((a.*field.member == b.*field.member) && ...); });
}

}  // namespace tavrin
