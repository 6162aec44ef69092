// SPDX-License-Identifier: MIT
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/engine/registries.h"
#include "tavrin/json/json.h"
#include "tavrin/schema/document_schema.h"
#include "tavrin/schema/language.h"
#include "tavrin/schema/note_text.h"

// That the schema accepts what the decoder does is tested by conformance.mjs; here, that it says what it should.

namespace tavrin {
namespace {

using testing::ElementsAreArray;
using testing::EndsWith;
using testing::Not;
using testing::NotNull;

/// The value behind keys; null where one is missing.
template <class... Keys>
const JSON* at(const JSON& value, Keys... keys) {
    const JSON* found = &value;
    for (const std::string_view key : {std::string_view(keys)...})
        if (found) found = found->find(key);
    return found;
}

std::vector<std::string> words(const JSON* list) {
    std::vector<std::string> found;
    for (std::int64_t i = 0; list && list->find(i); ++i) found.push_back(list->find(i)->description());
    return found;
}

std::string textOf(const JSON* value) { return value ? value->description() : "(none)"; }

template <class Tag, class Registry>
void expectEachRegisteredTag(const std::string& kind, const Registry& registry, const JSON& schema) {
    const std::vector<std::string> listed = words(at(schema, "$defs", kind, "properties", "type", "enum"));
    for (std::size_t tag = 0; tag < registry.size(); ++tag) {
        const std::string name(rawValue(static_cast<Tag>(tag)));
        SCOPED_TRACE(name);
        const bool isRegistered = registry[tag] != nullptr;
        EXPECT_EQ(at(schema, "$defs", kind + "s." + name) != nullptr, isRegistered);
        EXPECT_EQ(std::ranges::count(listed, name), isRegistered ? 1 : 0);
    }
}

TEST(Schema, DefinesEveryRegisteredType) {
    const JSON schema = JSON::parse(documentSchema());
    expectEachRegisteredTag<NodeType>("node", registerNodeType(), schema);
    expectEachRegisteredTag<ModifierType>("modifier", registerMonifierType(), schema);
}

TEST(Schema, SaysOfAKeyWhatItsNoteSays) {
    const JSON schema = JSON::parse(documentSchema());
    const JSON* const width = at(schema, "$defs", "modifiers.frame", "properties", "width");
    ASSERT_THAT(width, NotNull());
    EXPECT_EQ(textOf(at(*width, "description")),
              "The exact width. In points, 0 or more. Left out: the view's own width.");
    EXPECT_EQ(textOf(at(*width, "examples")), "[40]");
    const JSON* const weight = at(schema, "$defs", "nodes.text", "properties", "fontWeight");
    ASSERT_THAT(weight, NotNull());
    EXPECT_EQ(textOf(at(*weight, "default")), "regular");
    EXPECT_THAT(words(at(*at(*weight, "anyOf")->find(0), "enum")), ElementsAreArray({"regular", "semibold", "bold"}));
    EXPECT_EQ(textOf(at(schema, "$defs", "nodes.timer", "properties", "type", "description")),
              "Shows the time since or until a moment, such as 12:34 or 1:02:03. Since 1.1.");
    EXPECT_EQ(textOf(at(schema, "properties", "nodes", "required")), R"(["main"])");
}

TEST(Schema, IsAlwaysTheSameText) {
    EXPECT_EQ(documentSchema(), documentSchema());
    EXPECT_THAT(documentSchema(), EndsWith("}\n"));
}

TEST(Language, IsDescribed) {
    for (const LanguageRecord* record : allRecords(documentLanguage())) {
        EXPECT_THAT(record->summary, EndsWith(".")) << record->name;
        for (const LanguageField& field : record->fields) {
            SCOPED_TRACE(std::string(record->name) + "." + std::string(field.key));
            EXPECT_THAT(field.note.text, EndsWith("."));
            EXPECT_THAT(field.note.absent, Not(EndsWith(".")));
            const int sayings = (field.note.absent.empty() ? 0 : 1) + (field.note.defaultValue.empty() ? 0 : 1);
            EXPECT_EQ(sayings, field.isRequired ? 0 : 1) << "what holds where the key is left out";
            EXPECT_EQ(field.words.empty(), field.kind != ValueKind::keyword);
            EXPECT_TRUE(field.kind != ValueKind::text || !field.note.example.empty());
        }
    }
}

TEST(Notes, AreWrittenAsSentences) {
    const struct {
        const char* why;
        Note note;
        const char* text;
    } rows[] = {
        {"the sentence alone", {.text = "A."}, "A."},
        {"a unit", {.text = "A.", .unit = Unit::seconds}, "A. In seconds."},
        {"a least number", {.text = "A.", .minimum = 1}, "A. 1 or more."},
        {"a greatest number", {.text = "A.", .maximum = 2.5}, "A. At most 2.5."},
        {"a range with a unit",
         {.text = "A.", .unit = Unit::degrees, .minimum = 0, .maximum = 90},
         "A. In degrees, from 0 to 90."},
        {"what a missing key means", {.text = "A.", .absent = "none"}, "A. Left out: none."},
    };
    for (const auto& row : rows) EXPECT_EQ(sentences(row.note), row.text) << row.why;
}

}  // namespace
}  // namespace tavrin
