// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <tuple>
#include <utility>

#include "tavrin/platform/foundation/note.h"

namespace tavrin {

/// One field of a record: the key it is written under, the member that holds it and, where authors write the record, a
/// note for them.
///
/// A record lists its fields once, in declaration order, as `static constexpr std::tuple fields{Field{…}, …}`;
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

/// Calls `visit(field)` for each field of `Record`, in declaration order.
template <class Record, class Visit>
constexpr void forEachField(Visit&& visit) {
    std::apply([&](const auto&... field) { (visit(field), ...); }, Record::fields);
}

/// Whether two records agree in every listed field.
template <class Record>
[[nodiscard]] bool fieldsEqual(const Record& a, const Record& b) {
    return std::apply([&](const auto&... field) { return ((a.*field.member == b.*field.member) && ...); },
                      Record::fields);
}

}  // namespace tavrin
