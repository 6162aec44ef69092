// SPDX-License-Identifier: MIT
#include "tavrin/schema/language.h"

#include <concepts>
#include <optional>

#include "tavrin/dsl/dsl_root.h"
#include "tavrin/engine/record_types.h"

namespace tavrin {
namespace {

/// What a type is where it stands for itself.
template <class T>
consteval ValueKind kindOf() {
    if constexpr (std::same_as<T, Node>) return ValueKind::node;
    if constexpr (std::same_as<T, Modifier>) return ValueKind::modifier;
    if constexpr (DSLNodeProtocol<T>) return ValueKind::nodeRecord;
    if constexpr (DSLRecord<T> && !DSLNodeProtocol<T>) return ValueKind::part;
    if constexpr (StringConvertible<T>) return ValueKind::keyword;
    if constexpr (std::same_as<T, bool>) return ValueKind::boolean;
    if constexpr (std::integral<T>) return ValueKind::integer;
    if constexpr (std::floating_point<T>) return ValueKind::number;
    if constexpr (std::same_as<T, SharedText> || std::same_as<T, std::string>) return ValueKind::text;
}

/// Fills in what a property's type says of its field; wrappers add their share and pass on.
template <class T>
struct Describe {
    static void in(LanguageField& field) {
        constexpr ValueKind kind = kindOf<T>();
        field.kind = kind;
        if constexpr (kind == ValueKind::keyword) field.words = Keywords<T>::raw;
        if constexpr (kind == ValueKind::nodeRecord) field.record = rawValue(T::type);
        if constexpr (kind == ValueKind::part) field.record = T::name;
    }
};
template <class T>
struct Describe<std::optional<T>> : Describe<T> {};
template <class T>
struct Describe<std::vector<T>> {
    static void in(LanguageField& field) {
        field.isList = true;
        Describe<T>::in(field);
    }
};
template <>
struct Describe<NodeDictionary> {
    static void in(LanguageField& field) {
        field.isNamed = true;
        Describe<Node>::in(field);
    }
};
template <class T>
struct Describe<LosslessDSLValue<T>> {
    static void in(LanguageField& field) {
        field.isLossless = true;
        Describe<T>::in(field);
    }
};
template <class T>
struct Describe<DSLValue<T>> : Describe<T> {};
template <class T>
struct Describe<DSLValueWithDefault<T>> : Describe<T> {};

template <class Record>
LanguageRecord describe(std::string_view name, std::string_view version = {}) {
    LanguageRecord described{
        .name = name, .structure = &typeid(Record), .summary = Record::summary, .version = version};
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        LanguageField& last = described.fields.emplace_back();
        last.key = field.key;
        last.isRequired = !FieldCoding<Wrapper>::mayBeAbsent;
        last.note = field.note;
        Describe<Wrapper>::in(last);
    });
    return described;
}

template <class... Records>
std::vector<LanguageRecord> describeTagged(TypeList<Records...>) {
    return {describe<Records>(rawValue(Records::type), rawValue(Records::version))...};
}

template <class... Records>
std::vector<LanguageRecord> describeParts(TypeList<Records...>) {
    return {describe<Records>(Records::name)...};
}

}  // namespace

const Language& documentLanguage() {
    static const Language language{.document = describe<DSLRoot>("document"),
                                   .nodes = describeTagged(NodeRecords{}),
                                   .modifiers = describeTagged(ModifierRecords{}),
                                   .parts = describeParts(PartRecords{})};
    return language;
}

std::vector<const LanguageRecord*> allRecords(const Language& language) {
    std::vector<const LanguageRecord*> all{&language.document};
    for (const auto* list : {&language.nodes, &language.modifiers, &language.parts})
        for (const LanguageRecord& record : *list) all.push_back(&record);
    return all;
}

}  // namespace tavrin
