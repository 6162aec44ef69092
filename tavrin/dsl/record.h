#pragma once

#include <array>
#include <string_view>
#include <tuple>
#include <utility>

#include "tavrin/platform/foundation/field.h"
#include "tavrin/values/dsl_value.h"

// Every loop over a record's fields: decoding, encoding and binding, written once for all nodes and modifiers.

namespace tavrin {

/// A node or modifier record: a plain struct that lists its fields.
template <class T>
concept DSLRecord = requires { std::tuple_size<std::remove_cvref_t<decltype(T::fields)>>::value; };

template <class Record>
inline constexpr std::size_t fieldCount = std::tuple_size_v<std::remove_cvref_t<decltype(Record::fields)>>;

/// The keys of a record, in declaration order.
template <DSLRecord Record>
inline constexpr auto fieldKeys = std::apply(
    [](const auto&... field) { return std::array<std::string_view, sizeof...(field)>{field.key...}; }, Record::fields);

/// Records are equal when all their fields are.
template <DSLRecord Record>
[[nodiscard]] bool operator==(const Record& a, const Record& b) {
    return fieldsEqual(a, b);
}

/// Whether binding would change the record: some property, or a record held directly, holds an expression.
template <DSLRecord Record>
[[nodiscard]] bool needsBinding(const Record& record);
/// A copy of the record whose expressions are replaced by what they resolve to in a model. Throws `ModelContextError`.
template <DSLRecord Record>
[[nodiscard]] Record boundCopy(const Record& record, const ModelContext& model);

/// How a property takes part in binding. By default it does not.
template <class Wrapper>
struct FieldBinding {
    static bool needed(const Wrapper&) { return false; }
    static const Wrapper& bound(const Wrapper& value, const ModelContext&) { return value; }
};

template <class T>
struct FieldBinding<LosslessDSLValue<T>> {
    static bool needed(const LosslessDSLValue<T>& value) { return !value.resolved(); }
    static LosslessDSLValue<T> bound(const LosslessDSLValue<T>& value, const ModelContext& model) {
        return value.resolve(model);
    }
};

/// A record held directly is bound by the record that holds it.
template <DSLRecord T>
struct FieldBinding<DSLValue<T>> {
    static bool needed(const DSLValue<T>& value) { return needsBinding(value.wrappedValue); }
    static DSLValue<T> bound(const DSLValue<T>& value, const ModelContext& model) {
        return {boundCopy(value.wrappedValue, model)};
    }
};

template <DSLRecord T>
struct FieldBinding<DSLValue<std::optional<T>>> {
    static bool needed(const DSLValue<std::optional<T>>& value) {
        return value.wrappedValue && needsBinding(*value.wrappedValue);
    }
    static DSLValue<std::optional<T>> bound(const DSLValue<std::optional<T>>& value, const ModelContext& model) {
        return value.wrappedValue ? DSLValue<std::optional<T>>{boundCopy(*value.wrappedValue, model)} : value;
    }
};

template <class Wrapper>
inline constexpr bool isLossless = false;
template <class T>
inline constexpr bool isLossless<LosslessDSLValue<T>> = true;

/// Binds a record's own values in declaration order, then what it holds directly, into `target`, which may be the
/// record itself. The first failure ends it.
template <DSLRecord Record>
void bindFields(const Record& record, Record& target, const ModelContext& model) {
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        if constexpr (isLossless<Wrapper>)
            target.*field.member = FieldBinding<Wrapper>::bound(record.*field.member, model);
    });
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        if constexpr (!isLossless<Wrapper>)
            target.*field.member = FieldBinding<Wrapper>::bound(record.*field.member, model);
    });
}

template <DSLRecord Record>
[[nodiscard]] Record boundFields(const Record& record, const ModelContext& model) {
    Record copy;
    bindFields(record, copy, model);
    return copy;
}

template <DSLRecord Record>
bool needsBinding(const Record& record) {
    return std::apply(
        [&]<class... Wrapper>(const Field<Record, Wrapper>&... field) {
            return (FieldBinding<Wrapper>::needed(record.*field.member) || ...);
        },
        Record::fields);
}

template <DSLRecord Record>
Record boundCopy(const Record& record, const ModelContext& model) {
    if constexpr (requires { record.boundToModel(model); }) {
        return record.boundToModel(model);  // the record binds some property its own way
    } else {
        return boundFields(record, model);
    }
}

/// Replaces a record's expressions by what they resolve to. Throws `ModelContextError`; what was bound before stays.
template <DSLRecord Record>
void bindModel(Record& record, const ModelContext& model) {
    if constexpr (requires { record.boundToModel(model); }) {
        record = record.boundToModel(model);
    } else {
        bindFields(record, record, model);
    }
}

template <DSLRecord Record, class Wrapper>
void decodeField(const Decoder& object, const Field<Record, Wrapper>& field, const JSONElement& member,
                 Record& record) {
    if constexpr (FieldCoding<Wrapper>::mayBeAbsent) {
        if (!member.exists() || member.kind() == JSONKind::null) return;
    } else {
        if (!member.exists()) object.failKeyNotFound(field.key);
    }
    record.*field.member = decode<Wrapper>(object.member(field.key, member));
}

/// Decodes a record from a JSON object: keys in declaration order, other keys ignored.
template <DSLRecord Record>
[[nodiscard]] Record decodeRecord(const Decoder& decoder) {
    decoder.require(JSONKind::object);
    Record record;
    if constexpr (fieldCount<Record> > 0) {
        std::array<JSONElement, fieldCount<Record>> members;
        decoder.value().findMembers(fieldKeys<Record>, members.data());
        std::size_t index = 0;
        forEachField<Record>([&](const auto& field) { decodeField(decoder, field, members[index++], record); });
    }
    return record;
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
