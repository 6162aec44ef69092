#include "tavrin/schema/document_schema.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "tavrin/dsl/dsl_version.h"
#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/json_writer.h"
#include "tavrin/schema/language.h"
#include "tavrin/schema/note_text.h"
#include "tavrin/schema/scalar.h"

namespace tavrin {
namespace {

class SchemaWriter {
public:
    explicit SchemaWriter(const Language& language) : language_(language) {}

    std::string text() && {
        json_.beginObject();
        member("$schema", "https://json-schema.org/draft/2020-12/schema");
        member("title", "Tavrin widget document");
        documentMembers();
        json_.key("$defs").beginObject();
        tagged("node", "nodes", "A node. Keys that its type does not know are ignored.", language_.nodes);
        tagged("modifier", "modifiers", "A modifier. Keys that its type does not know are ignored.",
               language_.modifiers);
        for (const LanguageRecord& part : language_.parts) definition(part.name, part);
        scalarDefinitions();
        json_.endObject().endObject();
        return std::move(json_).text() + "\n";
    }

private:
    void member(std::string_view key, std::string_view value) { json_.key(key).value(value); }
    void strings(std::string_view key, auto&& words) {
        json_.key(key).beginArray();
        for (const std::string_view word : words) json_.value(word);
        json_.endArray();
    }
    void reference(std::string_view definition) { member("$ref", "#/$defs/" + std::string(definition)); }

    void documentMembers() {
        recordMembers(language_.document, [this] {
            json_.key("$schema").beginObject();
            member("description", "Where an editor finds this schema. Ignored when the document is drawn.");
            json_.endObject();
        });
    }

    /// A union of records by their "type": a key that says which, and a condition for each.
    void tagged(std::string_view name, std::string_view folder, std::string_view description,
                const std::vector<LanguageRecord>& records) {
        json_.key(name).beginObject();
        member("description", description);
        member("type", "object");
        strings("required", std::initializer_list<std::string_view>{"type"});
        json_.key("properties").beginObject().key("type").beginObject();
        member("description", "What it is; the other keys depend on it.");
        json_.key("enum").beginArray();
        for (const LanguageRecord& record : records) json_.value(record.name);
        json_.endArray().endObject().endObject().key("allOf").beginArray();
        for (const LanguageRecord& record : records) condition(folder, record.name);
        json_.endArray().endObject();
        for (const LanguageRecord& record : records) definition(path(folder, record.name), record);
    }

    static std::string path(std::string_view folder, std::string_view name) {
        return std::string(folder) + "." + std::string(name);
    }

    void condition(std::string_view folder, std::string_view name) {
        json_.beginObject().key("if").beginObject();
        json_.key("properties").beginObject().key("type").beginObject();
        member("const", name);
        json_.endObject().endObject();
        strings("required", std::initializer_list<std::string_view>{"type"});
        json_.endObject().key("then").beginObject();
        reference(path(folder, name));
        json_.endObject().endObject();
    }

    void definition(std::string_view name, const LanguageRecord& record) {
        json_.key(name).beginObject();
        recordMembers(record, [] {});
        json_.endObject();
    }

    void recordMembers(const LanguageRecord& record, auto&& furtherProperties) {
        const bool isLater = !record.version.empty() && record.version != rawValue(DSLVersion::v1);
        member("description",
               std::string(record.summary) + (isLater ? " Since " + std::string(record.version) + "." : ""));
        member("type", "object");
        std::vector<std::string_view> required;
        for (const LanguageField& field : record.fields)
            if (field.isRequired) required.push_back(field.key);
        if (!required.empty()) strings("required", required);
        json_.key("properties").beginObject();
        furtherProperties();
        for (const LanguageField& field : record.fields) property(field);
        json_.endObject();
    }

    void property(const LanguageField& field) {
        json_.key(field.key).beginObject();
        member("description", sentences(field.note));
        if (!field.note.defaultValue.empty()) encode(JSON::parse(field.note.defaultValue), json_.key("default"));
        if (!field.note.example.empty()) {
            json_.key("examples").beginArray();
            encode(JSON::parse(field.note.example), json_);
            json_.endArray();
        }
        valueMembers(field);
        json_.endObject();
    }

    void valueMembers(const LanguageField& field) {
        if (field.isNamed) {
            member("type", "object");
            strings("required", std::initializer_list<std::string_view>{"main"});
            json_.key("properties").beginObject().key("main").beginObject();
            member("description", "The widget.");
            plainMembers(field);
            json_.endObject().endObject().key("additionalProperties").beginObject();
            plainMembers(field);
            json_.endObject();
        } else if (field.isList) {
            types({"array"}, !field.isRequired);
            json_.key("items").beginObject();
            plainMembers(field);
            json_.endObject();
        } else if (field.isLossless) {
            losslessMembers(field);
        } else if (field.isRequired) {
            plainMembers(field);
        } else {
            json_.key("anyOf").beginArray().beginObject();
            plainMembers(field);
            json_.endObject().beginObject();
            member("type", "null");
            json_.endObject().endArray();
        }
    }

    /// A value that is read as it is.
    void plainMembers(const LanguageField& field) {
        switch (field.kind) {
            case ValueKind::node: reference("node"); break;
            case ValueKind::modifier: reference("modifier"); break;
            case ValueKind::record: reference(definitionOf(field.record)); break;
            case ValueKind::keyword: strings("enum", field.words); break;
            default: member("type", scalar(field.kind).ownType);
        }
    }

    std::string definitionOf(std::string_view record) const {
        for (const LanguageRecord& part : language_.parts)
            if (part.name == record) return std::string(record);
        return path("nodes", record);
    }

    /// Any scalar that converts, or an expression. Where the key may be left out, what does not convert counts as left
    /// out.
    void losslessMembers(const LanguageField& field) {
        if (field.kind == ValueKind::keyword) {
            json_.key("anyOf").beginArray().beginObject();
            strings("enum", field.words);
            json_.endObject().beginObject();
            reference(field.isRequired ? "expression" : "unknownWord");
            json_.endObject().endArray();
        } else if (field.isRequired) {
            reference(scalar(field.kind).definition);
        } else {
            types({scalar(field.kind).ownType, "string", "number", "boolean"}, true);
        }
    }

    /// The types, each once; "integer" is a "number".
    void types(std::initializer_list<std::string_view> words, bool orNull) {
        json_.key("type").beginArray();
        for (const auto* word = words.begin(); word != words.end(); ++word)
            if (std::find(words.begin(), word, *word) == word) json_.value(*word);
        if (orNull) json_.value("null");
        json_.endArray();
    }

    void scalarDefinitions() {
        for (const ValueKind kind : {ValueKind::text, ValueKind::boolean, ValueKind::integer, ValueKind::number})
            if (isUsed(kind)) scalarDefinition(scalar(kind));
        json_.key("expression").beginObject();
        member("description", "An expression such as {{initServerParam.title}}, which is looked up in the model.");
        member("type", "string");
        member("pattern", "^" + std::string(expressionPattern) + "$");
        json_.endObject().key("unknownWord").beginObject();
        member("description", "An expression, or what counts as left out: another word, a number, a boolean or null.");
        types({"string", "number", "boolean"}, true);
        json_.endObject();
    }

    void scalarDefinition(const Scalar& scalar) {
        json_.key(scalar.definition).beginObject();
        member("description", scalar.description);
        if (scalar.pattern.empty()) {
            types({"string", "number", "boolean"}, false);
        } else {
            types({scalar.ownType, "string"}, false);
            member("pattern", "^(?:" + scalar.pattern + "|" + std::string(expressionPattern) + ")$");
        }
        json_.endObject();
    }

    /// Whether some key has to be a scalar of that kind.
    [[nodiscard]] bool isUsed(ValueKind kind) const {
        for (const LanguageRecord* record : allRecords(language_))
            for (const LanguageField& field : record->fields)
                if (field.kind == kind && field.isLossless && field.isRequired) return true;
        return false;
    }

    const Language& language_;
    JSONWriter json_{JSONWriter::Style::pretty};
};

}  // namespace

std::string documentSchema() { return SchemaWriter(documentLanguage()).text(); }

}  // namespace tavrin
