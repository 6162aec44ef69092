// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

TEST(Failures, AreObjectsForPrograms) {
    const struct {
        const char* why;
        const char* document;
        const char* model;
        const char* error;
    } rows[] = {
        {"no main node", R"({"version": "1.0", "nodes": {}})", "{}",
         R"({"error":{"type":"TavrinError","kind":"Engine","message":"view must have main node"}})"},
        {"a precondition",
         R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a][}}"}}})",
         R"({"a": []})",
         R"({"error":{"type":"TavrinError","kind":"Precondition","codingPath":["nodes","main","content"],"message":)"},
        {"no such value in the model",
         R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a}}"}}})", "{}",
         R"({"error":{"type":"ModelContextError","kind":"ResolveExpression","codingPath":["nodes","main","content"],"message":)"},
        {"a missing key", "{\n  \"nodes\": {}\n}", "{}",
         R"({"error":{"type":"DecodingError","kind":"keyNotFound","codingPath":[],"key":"version","message":)"},
        {"a key's object lies deep", R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{}]}}})",
         "{}", R"("kind":"keyNotFound","codingPath":["nodes","main","children",0],"key":"type","message":)"},
        {"a wrong type", R"({"version": "1.0", "nodes": []})", "{}",
         R"({"error":{"type":"DecodingError","kind":"typeMismatch","codingPath":["nodes"],"message":)"},
        {"not JSON", "{\"version\": \"1.0\"\n \"nodes\": {}}", "{}", R"("file":"case.json","line":2,"column":2}})"},
        {"the model is not JSON", R"({"version": "1.0", "nodes": {}})", "[1,\n2",
         R"("file":"model.json","line":2,"column":2}})"},
        {"not convertible",
         R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "x", "modifiers": [
             {"type": "padding", "length": " 1"}]}}})",
         "{}",
         R"({"error":{"type":"ConversionError","domain":"ZepDSLConverter","code":-1,"codingPath":["nodes","main","modifiers",0,"length"],"message":)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("case.json", row.document);
        place.write("model.json", row.model);
        for (const char* verb : {"tree", "layout", "check", "render"}) {
            SCOPED_TRACE(verb);
            const Finished finished = place.run({verb, "case.json", "--model", "model.json", "--errors", "json"});
            EXPECT_EQ(finished.status, 1);
            EXPECT_EQ(finished.out, "");
            EXPECT_THAT(finished.err, HasSubstr(row.error));
            EXPECT_EQ(std::count(finished.err.begin(), finished.err.end(), '\n'), 1);
        }
        EXPECT_EQ(place.files().size(), 2u);
    }
}

TEST(Failures, NameTheDocumentWhereThereAreSeveral) {
    const Workplace place;
    place.write("a.json", R"({"version": "1.0", "nodes": {}})");
    place.write("b.json", hello);
    const Finished finished = place.run({"check", "b.json", "a.json", "--errors", "json"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(errorText(finished, "file"), "a.json");
}

TEST(Failures, AreWrittenAsCompilersDo) {
    const std::string longLine = "{\"version\": \"1.0\", \"x\": \"" + std::string(300, 'y') +
                                 "\", \"nodes\": 5, \"z\": \"" + std::string(300, 'w') + "\"}";
    const struct {
        const char* why;
        std::string document;
        std::string text;
    } rows[] = {
        {"the object that lacks something", R"({"version": "1.0", "nodes": {}})",
         "case.json:1:29: error: Engine: view must have main node [refused]\n"},
        {"a tab stays a tab", "{\"version\": \"1.0\", \"nodes\":\n\t5}",
         "\n    2 | \t5}\n      | \t^\n      at nodes\n"},
        {"the path", R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{"type": 7}]}}})",
         "\n      at nodes.main.children[0].type\n"},
        {"a long line is cut", longLine,
         "\n    1 | …" + std::string(48, 'y') + "\", \"nodes\": 5, \"z\": \"" + std::string(31, 'w') + "…\n      | " +
             std::string(61, ' ') + "^\n"},
        {"an expression that leads nowhere",
         "{\"version\": \"1.0\", \"nodes\": {\"main\": {\"type\": \"text\",\n  \"content\": "
         "\"{{initServerParam.a}}\"}}}",
         "case.json:2:14: error: key path not found in model: [\"a\"] [unresolved-expression]\n    2 |   \"content\": "
         "\"{{initServerParam.a}}\"}}}\n"},
        {"columns are characters", "{\"version\": \"1.0\", \"é\": 1, \"nodes\": 5}",
         "\n    1 | {\"version\": \"1.0\", \"é\": 1, \"nodes\": 5}\n      | " + std::string(36, ' ') + "^\n"},
        {"nothing that moves the cursor", "{\"version\": \"1.0\", \"\x1b[2J\": 1, \"nodes\": 5}",
         "\"\xEF\xBF\xBD[2J\""},
        {"the end of a text", "{", "case.json:1:2: error: "},
        {"an empty text", "", "case.json:1:1: error: "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("case.json", row.document);
        place.write("model.json", "{}");
        const Finished finished = place.run({"check", "case.json", "--model", "model.json"});
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err, HasSubstr(row.text));
        EXPECT_THAT(finished.err, Not(HasSubstr("\x1b")));
    }
}

TEST(Failures, ShortenAWayOfManySteps) {
    const Workplace place;
    std::string children = R"({"type": "spacr"})";
    for (int level = 0; level < 50; ++level) children = R"({"type": "vstack", "children": [)" + children + "]}";
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": )" + children + "}}");
    EXPECT_THAT(place.run({"tree", "a.json"}).err,
                HasSubstr("      at nodes.main.children[0].children[0]…[0].children[0].children[0].type\n"));
    EXPECT_EQ(std::get<JSONArray>(errorMember(place.run({"tree", "a.json", "--errors", "json"}), "codingPath").object())
                  .size(),
              2U + 2 * 50 + 1);
}

TEST(Failures, NameStandardInput) {
    const Workplace place;
    place.write("a.json", hello);
    EXPECT_THAT(place.run({"check", "-"}, broken).err, HasSubstr("<stdin>:4:"));
    EXPECT_THAT(place.run({"check", "a.json", "--model", "-"}, "nonsense").err, HasSubstr("<stdin>:1:1: error: "));
    EXPECT_EQ(place.run({"check", "-"}, hello).status, 0);
}

TEST(Failures, OfReading) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("folder/a.json", hello);
    place.write("huge.json", "");
    std::filesystem::resize_file(place.path("huge.json"), (std::uintmax_t{256} << 20) + 1);
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {"missing", {"check", "b.json"}, "cannot read 'b.json': No such file or directory"},
        {"missing model", {"check", "a.json", "--model", "b.json"}, "cannot read 'b.json': No such file or directory"},
        {"a folder", {"check", "a.json", "--model", "folder"}, "cannot read 'folder': Is a directory"},
        {"a file as a folder", {"tree", "a.json/b.json"}, "Not a directory"},
        {"too large", {"layout", "huge.json"}, "larger than 256 MiB"},
        {"no name", {"check", ""}, "cannot read ''"},
    };
    EXPECT_EQ(errorText(place.run({"tree", "b.json", "--errors", "json"}), "file"), "b.json");
    EXPECT_EQ(errorText(place.run({"tree", "a.json", "--model", "b.json", "--errors", "json"}), "file"), "b.json");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_THAT(place.run(row.words).err, HasSubstr(std::string("tavrin: error: cannot read ")));
        const Finished finished = place.run(joined(row.words, {"--errors", "json"}));
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(errorText(finished, "type"), "IOError");
        EXPECT_THAT(errorText(finished, "message"), HasSubstr(row.message));
    }
}

TEST(Failures, DoubtfulFramesAreWarnings) {
    const Workplace place;
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "x", "modifiers": [
        {"type": "frame", "minWidth": 50, "maxWidth": 10}]}}})");
    const Finished asText = place.run({"layout", "a.json"});
    EXPECT_EQ(asText.status, 0);
    EXPECT_THAT(asText.err, HasSubstr("warning: "));
    const Finished asJSON = place.run({"layout", "a.json", "--errors", "json"});
    EXPECT_EQ(asJSON.out, asText.out);
    EXPECT_EQ(asJSON.err, "");
}

}  // namespace
}  // namespace tavrin::cli
