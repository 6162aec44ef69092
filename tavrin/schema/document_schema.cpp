// SPDX-License-Identifier: MIT
#include "tavrin/schema/document_schema.h"

#include <string_view>
#include <utility>

#include "tavrin/dsl/type_tags.h"
#include "tavrin/schema/note_text.h"
#include "tavrin/schema/value_schema.h"

namespace tavrin {
namespace {

/// What editors know of a key besides what it takes.
JSONMembers annotations(const Note& note) {
    JSONMembers members{{"description", sentences(note)}};
    if (!note.defaultValue.empty()) members.emplace_back("default", JSON::parse(note.defaultValue));
    if (!note.example.empty()) members.emplace_back("examples", list({JSON::parse(note.example)}));
    return members;
}

JSON property(const LanguageField& field) {
    JSONMembers members = annotations(field.note);
    append(members, valueSchema(field));
    return object(std::move(members));
}

std::string description(const LanguageRecord& record) {
    const bool isLater = !record.version.empty() && record.version != rawValue(DSLVersion::v1);
    return std::string(record.summary) + (isLater ? " Since " + std::string(record.version) + "." : "");
}

/// The schema of a record, whose object may have further properties. It does not describe itself: editors would show
/// that in place of what a key that takes the record means.
JSONMembers recordSchema(const LanguageRecord& record, JSONMembers properties = {}) {
    std::vector<std::string_view> required;
    for (const LanguageField& field : record.fields) {
        properties.emplace_back(field.key, property(field));
        if (field.isRequired) required.push_back(field.key);
    }
    JSONMembers members{{"type", "object"}};
    if (!required.empty()) members.emplace_back("required", list(required));
    members.emplace_back("properties", object(std::move(properties)));
    return members;
}

/// The record of a node or modifier. Its "type" is judged where the record is chosen by it, and explained here.
JSON taggedSchema(const LanguageRecord& record) {
    const JSON type = object({{"description", description(record)}, {"examples", list({std::string(record.name)})}});
    return object(recordSchema(record, {{"type", type}}));
}

JSON partSchema(const LanguageRecord& record) {
    JSONMembers members{{"$comment", description(record)}};
    append(members, recordSchema(record));
    return object(std::move(members));
}

using DefinitionOf = std::string (*)(std::string_view type);

/// Chooses a record by the "type".
JSON choice(const std::vector<LanguageRecord>& records, DefinitionOf definitionOf) {
    const JSON typeIsThere = list({"type"});
    std::vector<std::string_view> types;
    JSONArray branches;
    for (const LanguageRecord& record : records) {
        types.push_back(record.name);
        const JSON isThis = object({{"type", object({{"const", std::string(record.name)}})}});
        branches.push_back(object({{"if", object({{"properties", isThis}, {"required", typeIsThere}})},
                                   {"then", object({referenceTo(definitionOf(record.name))})}}));
    }
    return object({{"type", "object"},
                   {"required", typeIsThere},
                   {"properties", object({{"type", object({{"enum", list(types)}})}})},
                   {"allOf", JSON(std::move(branches))}});
}

void defineTagged(std::string_view name, const std::vector<LanguageRecord>& records, DefinitionOf definitionOf,
                  JSONMembers& definitions) {
    definitions.emplace_back(name, choice(records, definitionOf));
    for (const LanguageRecord& record : records)
        definitions.emplace_back(definitionOf(record.name), taggedSchema(record));
}

JSON definitionsOf(const Language& language) {
    JSONMembers definitions;
    defineTagged("node", language.nodes, nodeDefinition, definitions);
    defineTagged("modifier", language.modifiers, modifierDefinition, definitions);
    for (const LanguageRecord& part : language.parts) definitions.emplace_back(part.name, partSchema(part));

    append(definitions, valueDefinitions(language));
    return object(std::move(definitions));
}

}  // namespace

std::string documentSchema() {
    const Language& language = documentLanguage();
    const JSON schemaKey =
        object({{"description", "Where an editor finds this schema. Ignored when the document is drawn."}});
    JSONMembers members{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                        {"title", "Tavrin widget document"},
                        {"description", description(language.document)}};
    append(members, recordSchema(language.document, {{"$schema", schemaKey}}));
    members.emplace_back("$defs", definitionsOf(language));
    JSONWriter writer(JSONWriter::Style::pretty);
    encode(object(std::move(members)), writer);
    return std::move(writer).text() + "\n";
}

}  // namespace tavrin
