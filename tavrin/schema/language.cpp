// SPDX-License-Identifier: MIT
#include "tavrin/schema/language.h"

#include <concepts>
#include <optional>

#include "tavrin/dsl/dsl_root.h"
#include "tavrin/engine/record_types.h"

namespace tavrin {
namespace {

/// Fills in what a property's type says of its field; wrappers add their share and pass on.
template <class T>
struct Describe;

template <class T>
    requires(std::same_as<T, SharedText> || std::same_as<T, std::string>)
struct Describe<T> {
    static void in(LanguageField& field) { field.kind = ValueKind::text; }
};
template <>
struct Describe<bool> {
    static void in(LanguageField& field) { field.kind = ValueKind::boolean; }
};
template <std::integral T>
    requires(!std::same_as<T, bool>)
struct Describe<T> {
    static void in(LanguageField& field) { field.kind = ValueKind::integer; }
};
template <std::floating_point T>
struct Describe<T> {
    static void in(LanguageField& field) { field.kind = ValueKind::number; }
};
template <StringConvertible Enum>
struct Describe<Enum> {
    static void in(LanguageField& field) {
        field.kind = ValueKind::keyword;
        field.words = Keywords<Enum>::raw;
    }
};
template <>
struct Describe<Node> {
    static void in(LanguageField& field) { field.kind = ValueKind::node; }
};
template <>
struct Describe<Modifier> {
    static void in(LanguageField& field) { field.kind = ValueKind::modifier; }
};
template <DSLRecord Record>
struct Describe<Record> {
    static void in(LanguageField& field) {
        if constexpr (requires { Record::type; }) {
            field.kind = ValueKind::nodeRecord;
            field.record = rawValue(Record::type);
        } else {
            field.kind = ValueKind::part;
            field.record = Record::name;
        }
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
