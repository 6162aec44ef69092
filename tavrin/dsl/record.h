// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/field.h"
#include "tavrin/values/dsl_value.h"

// Every loop over a record's fields: decoding, encoding and binding, written once for all nodes and modifiers.

namespace tavrin {

/// A node or modifier record: a plain struct that lists its fields.
template <class T>
concept DSLRecord = requires {
    T::fields.size;
};

template <class Record>
inline constexpr std::size_t fieldCount = std::remove_cvref_t<decltype(Record::fields)>::size;

/// The keys of a record, in declaration order.
template <DSLRecord Record>
inline constexpr auto fieldKeys = Record::fields.apply([](const auto&... field) {
    return std::array<std::string_view, sizeof...(field)>{field.key...};
});

/// The key of a property, named by its member: `keyOf<&LinkNode::url>`. A member that is not listed does not compile.
template <auto property>
inline constexpr std::string_view keyOf = []<class Record, class Value>(Value Record::*) {
    std::string_view key;
    forEachField<Record>([&]<class Other>(const Field<Record, Other>& field) {
        if constexpr (std::same_as<Value, Other>) key = field.member == property ? field.key : key;
    });
    if (key.empty()) throw "the member is not among the record's fields";
    return key;
}(property);

/// The type of the property at a place in a record's list of fields.
template <DSLRecord Record, std::size_t index>
using FieldValue = std::remove_cvref_t<decltype(std::declval<Record&>().*(Record::fields.template at<index>().member))>;

/// Records are equal when all their fields are.
template <DSLRecord Record>
[[nodiscard]] bool operator==(const Record& a, const Record& b) {
    return fieldsEqual(a, b);
}

/// Whether binding would change the record: some property, or a record held directly, holds an expression.
template <DSLRecord Record>
[[nodiscard]] bool needsBinding(const Record& record);
/// Replaces a record's expressions by what they resolve to. Throws `ModelContextError`; what was bound before stays.
template <DSLRecord Record>
void bindModel(Record& record, const ModelContext& model);

/// How a property takes part in binding: `boundFirst`, whether before or after what the record holds directly;
/// `needed`, whether something in it is to be resolved, and only then `bind` does so. By default it takes no part.
template <class Wrapper>
struct FieldBinding {
    static constexpr bool boundFirst = false;
    static bool needed(const Wrapper&) { return false; }
    static void bind(Wrapper&, const ModelContext&) {}
};

template <class T>
struct FieldBinding<LosslessDSLValue<T>> {
    static constexpr bool boundFirst = true;
    static bool needed(const LosslessDSLValue<T>& value) { return !value.resolved(); }
    static void bind(LosslessDSLValue<T>& value, const ModelContext& model) {
        value.setWrappedValue(value.resolve(model));
    }
};

/// A record held directly is bound by the record that holds it.
template <DSLRecord T>
struct FieldBinding<DSLValue<T>> {
    static constexpr bool boundFirst = false;
    static bool needed(const DSLValue<T>& value) { return needsBinding(value.wrappedValue); }
    static void bind(DSLValue<T>& value, const ModelContext& model) { bindModel(value.wrappedValue, model); }
};

template <DSLRecord T>
struct FieldBinding<DSLValue<std::optional<T>>> {
    static constexpr bool boundFirst = false;
    static bool needed(const DSLValue<std::optional<T>>& value) {
        return value.wrappedValue && needsBinding(*value.wrappedValue);
    }
    static void bind(DSLValue<std::optional<T>>& value, const ModelContext& model) {
        bindModel(*value.wrappedValue, model);
    }
};

template <bool first, DSLRecord Record>
void bindThose(Record& record, const ModelContext& model) {
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        if constexpr (FieldBinding<Wrapper>::boundFirst == first) {
            Wrapper& value = record.*field.member;
            if (FieldBinding<Wrapper>::needed(value))
                within(field.key, [&] { FieldBinding<Wrapper>::bind(value, model); });
        }
    });
}

/// Binds a record's own values in declaration order, and then what it holds directly. The first failure ends it.
template <DSLRecord Record>
void bindFields(Record& record, const ModelContext& model) {
    bindThose<true>(record, model);
    bindThose<false>(record, model);
}

template <DSLRecord Record>
bool needsBinding(const Record& record) {
    return Record::fields.apply([&]<class... Wrapper>(const Field<Record, Wrapper>&... field) {
        return (FieldBinding<Wrapper>::needed(record.*field.member) || ...);
    });
}

template <DSLRecord Record>
void bindModel(Record& record, const ModelContext& model) {
    if constexpr (requires { record.bindToModel(model); }) {
        record.bindToModel(model);  // the record binds some property its own way
    } else {
        bindFields(record, model);
    }
}

/// A copy of the record whose expressions are replaced by what they resolve to in a model. Throws `ModelContextError`.
template <DSLRecord Record>
[[nodiscard]] Record boundCopy(const Record& record, const ModelContext& model) {
    Record bound = record;
    bindModel(bound, model);
    return bound;
}

/// Decodes the property at a place in a record's list of fields.
template <DSLRecord Record, std::size_t index>
[[nodiscard]] auto decodeField(const Decoder& object, const JSONElement& member) {
    constexpr std::string_view key = fieldKeys<Record>[index];
    using Wrapper = FieldValue<Record, index>;
    if constexpr (FieldCoding<Wrapper>::mayBeAbsent) {
        if (!member.exists() || member.isNull()) return Wrapper{};
    } else {
        if (!member.exists()) object.failKeyNotFound(key);
    }
    return decode<Wrapper>(object.member(key, member));
}

/// Decodes a record from a JSON object: keys in declaration order, other keys ignored. Each value is made where it
/// stays, so the fields must be all of the record's members, in their order.
template <DSLRecord Record>
[[nodiscard]] Record decodeRecord(const Decoder& decoder) {
    decoder.require(JSONKind::object);
    const auto members = decoder.value().template findMembers<fieldKeys<Record>>();
    return [&]<std::size_t... index>(std::index_sequence<index...>) {
        return Record{decodeField<Record, index>(decoder, members[index])...};
    }
    (std::make_index_sequence<fieldCount<Record>>());
}

/// Writes the members of a record into the object that the caller has begun.
template <DSLRecord Record>
void encodeFields(const Record& record, JSONWriter& writer) {
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        const Wrapper& value = record.*field.member;
        if (!FieldCoding<Wrapper>::isLeftOut(value)) FieldCoding<Wrapper>::encode(value, writer.key(field.key));
    });
}

template <DSLRecord Record>
struct Coding<Record> {
    static Record decode(const Decoder& decoder) { return decodeRecord<Record>(decoder); }
    static void encode(const Record& record, JSONWriter& writer) {
        writer.beginObject();
        encodeFields(record, writer);
        writer.endObject();
    }
};

}  // namespace tavrin
