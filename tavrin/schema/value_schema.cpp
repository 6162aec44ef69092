// SPDX-License-Identifier: MIT
#include "tavrin/schema/value_schema.h"

#include <array>

namespace tavrin {
namespace {

// What `floatFromText` and `isExpression` accept, as ECMAScript's regular expressions.
constexpr std::string_view decimal = R"((?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?)";
constexpr std::string_view hexadecimal = R"(0[xX](?:[0-9a-fA-F]+\.?[0-9a-fA-F]*|\.[0-9a-fA-F]+)(?:[pP][+-]?[0-9]+)?)";
constexpr std::string_view notFinite = "[iI][nN][fF](?:[iI][nN][iI][tT][yY])?|[nN][aA][nN]";
constexpr std::string_view expression = R"(\{\{[\s\S]*\}\})";

std::string concatenated(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (const std::string_view piece : pieces) text += piece;
    return text;
}

/// A kind of scalar that not every string stands for.
struct Convertible {
    ValueKind kind;
    const char* type;
    std::string strings;  ///< what strings have to look like
};

const std::array<Convertible, 3>& convertibles() {
    static const std::array<Convertible, 3> list{{
        {ValueKind::boolean, "boolean", "true|false"},
        {ValueKind::integer, "integer", "[+-]?[0-9]+"},
        {ValueKind::number, "number", concatenated({"[+-]?(?:", decimal, "|", hexadecimal, "|", notFinite, ")"})},
    }};
    return list;
}

const char* typeOf(ValueKind kind) {
    for (const Convertible& scalar : convertibles())
        if (scalar.kind == kind) return scalar.type;
    return "string";
}

/// A value that is read as it is.
JSONMembers plainSchema(const LanguageField& field) {
    switch (field.kind) {
        case ValueKind::node: return {referenceTo("node")};
        case ValueKind::modifier: return {referenceTo("modifier")};
        case ValueKind::nodeRecord: return {referenceTo(nodeDefinition(field.record))};
        case ValueKind::part: return {referenceTo(field.record)};
        case ValueKind::keyword: return {{"enum", list(field.words)}};
        default: return {{"type", typeOf(field.kind)}};
    }
}

JSONMembers plainOr(const LanguageField& field, JSONMembers other) {
    return {{"anyOf", list({object(plainSchema(field)), object(std::move(other))})}};
}

/// A node for each name that an author thinks of; one has to be there.
JSONMembers namedSchema(const LanguageField& field) {
    JSONMembers main{{"description", "The widget."}};
    append(main, plainSchema(field));
    return {{"type", "object"},
            {"required", list({"main"})},
            {"properties", object({{"main", object(std::move(main))}})},
            {"additionalProperties", object(plainSchema(field))}};
}

/// Where the key may be left out, a scalar that does not convert counts as left out.
JSONMembers losslessSchema(const LanguageField& field) {
    if (!field.isRequired) return plainOr(field, {referenceTo("leftOut")});
    if (field.kind == ValueKind::keyword) return plainOr(field, {referenceTo("expression")});
    return {referenceTo(field.kind == ValueKind::text ? "text" : typeOf(field.kind))};
}

bool isRequiredSomewhere(ValueKind kind, const Language& language) {
    for (const LanguageRecord* record : allRecords(language))
        for (const LanguageField& field : record->fields)
            if (field.kind == kind && field.isLossless && field.isRequired) return true;
    return false;
}

}  // namespace

JSONObject::Member referenceTo(std::string_view definition) {
    return {"$ref", JSON("#/$defs/" + std::string(definition))};
}

std::string nodeDefinition(std::string_view type) { return "nodes." + std::string(type); }
std::string modifierDefinition(std::string_view type) { return "modifiers." + std::string(type); }

JSONMembers valueSchema(const LanguageField& field) {
    if (field.isNamed) return namedSchema(field);
    if (field.isList) {
        const JSON types = field.isRequired ? list({"array"}) : list({"array", "null"});
        return {{"type", types}, {"items", object(plainSchema(field))}};
    }
    if (field.isLossless) return losslessSchema(field);
    return field.isRequired ? plainSchema(field) : plainOr(field, {{"type", "null"}});
}

JSONMembers valueDefinitions(const Language& language) {
    JSONMembers definitions;
    definitions.emplace_back("text", object({{"$comment", "Also a number or boolean, which is shown as a text."},
                                             {"type", list({"string", "number", "boolean"})}}));
    for (const Convertible& scalar : convertibles()) {
        if (!isRequiredSomewhere(scalar.kind, language)) continue;
        definitions.emplace_back(scalar.type,
                                 object({{"$comment", "Also as a string, or an expression."},
                                         {"type", list({scalar.type, "string"})},
                                         {"pattern", concatenated({"^(?:", scalar.strings, "|", expression, ")$"})}}));
    }
    definitions.emplace_back("expression", object({{"$comment", "Looked up in the model."},
                                                   {"type", "string"},
                                                   {"pattern", concatenated({"^", expression, "$"})}}));
    definitions.emplace_back("leftOut", object({{"$comment", "An expression, or a scalar that counts as left out."},
                                                {"not", object({{"type", list({"array", "object"})}})}}));
    return definitions;
}

}  // namespace tavrin
