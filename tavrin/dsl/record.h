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
/// Replaces the record's expressions by what they resolve to in a model. Throws `ModelContextError`.
template <DSLRecord Record>
void bindModel(Record& record, const ModelContext& model);

/// How a property takes part in binding. By default it does not.
template <class Wrapper>
struct FieldBinding {
    static bool needed(const Wrapper&) { return false; }
    static void bind(Wrapper&, const ModelContext&) {}
};

template <class T>
struct FieldBinding<LosslessDSLValue<T>> {
    static bool needed(const LosslessDSLValue<T>& value) { return !value.resolved(); }
    static void bind(LosslessDSLValue<T>& value, const ModelContext& model) { value.bindModel(model); }
};

/// A record held directly is bound by the record that holds it.
template <DSLRecord T>
struct FieldBinding<DSLValue<T>> {
    static bool needed(const DSLValue<T>& value) { return needsBinding(value.wrappedValue); }
    static void bind(DSLValue<T>& value, const ModelContext& model) { bindModel(value.wrappedValue, model); }
};

template <DSLRecord T>
struct FieldBinding<DSLValue<std::optional<T>>> {
    static bool needed(const DSLValue<std::optional<T>>& value) {
        return value.wrappedValue && needsBinding(*value.wrappedValue);
    }
    static void bind(DSLValue<std::optional<T>>& value, const ModelContext& model) {
        if (value.wrappedValue) bindModel(*value.wrappedValue, model);
    }
};

template <class Wrapper>
inline constexpr bool isLossless = false;
template <class T>
inline constexpr bool isLossless<LosslessDSLValue<T>> = true;

/// Binds a record's own values in declaration order, then what it holds directly. The first failure ends it.
template <DSLRecord Record>
void bindFields(Record& record, const ModelContext& model) {
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        if constexpr (isLossless<Wrapper>) FieldBinding<Wrapper>::bind(record.*field.member, model);
    });
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        if constexpr (!isLossless<Wrapper>) FieldBinding<Wrapper>::bind(record.*field.member, model);
    });
}

template <DSLRecord Record>
bool needsBinding(const Record& record) {
    bool needed = false;
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        needed = needed || FieldBinding<Wrapper>::needed(record.*field.member);
    });
    return needed;
}

template <DSLRecord Record>
void bindModel(Record& record, const ModelContext& model) {
    if constexpr (requires { record.bindModel(model); }) {
        record.bindModel(model);  // the record binds some property its own way
    } else {
        bindFields(record, model);
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
