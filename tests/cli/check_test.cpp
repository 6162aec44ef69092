// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/values/model_context.h"
#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// Two warnings with a fix, one without, one about the model and a note.
constexpr std::string_view doubtful = R"({
  "version": "1.0",
  "nodes": {
    "main": {
      "type": "vstack",
      "children": [
        {"type": "text", "content": "100 %: ü", "fontsize": 12, "fontWeight": "Bold"},
        {"type": "node", "name": "row", "modifiers": [{"type": "clipped"}]},
        {"type": "color", "value": "{{initServerParam.tint}}"}
      ]
    },
    "row": {"type": "spacer"},
    "spare": {"type": "spacer"}
  }
}
)";
constexpr std::string_view tint = "{\n  \"tint\": \"#FF112233\"\n}\n";

/// Compares with tests/cli/check/NAME, or writes it.
void expectGolden(const std::string& name, const std::string& text) {
    const std::string path = std::string(TAVRIN_SOURCE_DIR) + "/tests/cli/check/" + name;
    if (const char* const update = std::getenv("TAVRIN_UPDATE_GOLDENS"); update && *update) std::ofstream(path) << text;
    std::ifstream file(path);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(file), {})) << path;
}

class Check : public ::testing::Test {
protected:
    Check() {
        place.write("a.json", doubtful);
        place.write("m.json", tint);
    }

    [[nodiscard]] Finished check(std::vector<std::string> more) const {
        more.insert(more.begin(), {"check", "a.json", "--model", "m.json"});
        return place.run(more);
    }

    const Workplace place;
};

TEST_F(Check, WritesWarningsAsCompilersDo) {
    const Finished finished = check({});
    EXPECT_EQ(finished.status, 0) << "a warning is no failure";
    EXPECT_EQ(finished.out, "");
    expectGolden("text.txt", finished.err);
    EXPECT_EQ(check({"--errors", "json"}).err, "") << "a warning is no failure";
    EXPECT_THAT(check({"--notes"}).err,
                HasSubstr("a.json:13:5: note: the node \"spare\" is never drawn [unused-node]"));
}

TEST_F(Check, WritesForOtherPrograms) {
    for (const std::string format : {"json", "sarif", "github"}) {
        SCOPED_TRACE(format);
        const Finished finished = check({"--format", format, "--notes"});
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.err, "");
        expectGolden(format + ".txt", finished.out);
    }
}

const JSON& at(const JSON& value, const std::vector<JSONKey>& path) {
    static const JSON none;
    const JSON* const found = ModelContext::getValueFrom(path, value);
    return found ? *found : none;
}

const JSON& at(const JSON& value, const char* key) { return at(value, {JSONKey(key)}); }

std::size_t sizeOf(const JSON& list) { return std::get<JSONArray>(list.object()).size(); }

TEST_F(Check, SarifHangsTogether) {
    const JSON log = JSON::parse(check({"--format", "sarif"}).out);
    EXPECT_EQ(at(log, "version").description(), "2.1.0");
    const JSON& run = at(log, {JSONKey("runs"), JSONKey(std::int64_t{0})});
    const auto& rules = std::get<JSONArray>(at(run, {JSONKey("tool"), JSONKey("driver"), JSONKey("rules")}).object());
    EXPECT_GT(rules.size(), 20u);
    ASSERT_EQ(sizeOf(at(run, "results")), 4u);
    for (const JSON& result : std::get<JSONArray>(at(run, "results").object())) {
        const std::string id = at(result, "ruleId").description();
        SCOPED_TRACE(id);
        EXPECT_TRUE(std::any_of(rules.begin(), rules.end(),
                                [&](const JSON& rule) { return at(rule, "id").description() == id; }));
        EXPECT_EQ(at(result, "level").description(), "warning");
        EXPECT_NE(at(result, {JSONKey("message"), JSONKey("text")}).description(), "");
        const JSON& place = at(result, {JSONKey("locations"), JSONKey(std::int64_t{0}), JSONKey("physicalLocation")});
        EXPECT_THAT(at(place, {JSONKey("artifactLocation"), JSONKey("uri")}).description(),
                    ::testing::AnyOf("a.json", "m.json"));
        for (const char* edge : {"startLine", "startColumn", "endLine", "endColumn"})
            EXPECT_TRUE(std::holds_alternative<std::int64_t>(at(place, {JSONKey("region"), JSONKey(edge)}).object()))
                << edge;
        if (id != "unknown-key") continue;
        const JSON& change = at(
            result, {JSONKey("fixes"), JSONKey(std::int64_t{0}), JSONKey("artifactChanges"), JSONKey(std::int64_t{0})});
        EXPECT_EQ(at(change, {JSONKey("artifactLocation"), JSONKey("uri")}).description(), "a.json");
        EXPECT_EQ(
            at(change, {JSONKey("replacements"), JSONKey(std::int64_t{0}), JSONKey("insertedContent"), JSONKey("text")})
                .description(),
            "\"fontSize\"");
        EXPECT_EQ(at(change, {JSONKey("replacements"), JSONKey(std::int64_t{0}), JSONKey("deletedRegion"),
                              JSONKey("startLine")})
                      .description(),
                  "7");
    }
}

TEST_F(Check, FailsOnWarningsWhereItIsStrict) {
    EXPECT_EQ(check({"--strict"}).status, 1);
    place.write("a.json", hello);
    EXPECT_EQ(check({"--strict"}).status, 0);
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}, "b": {"type": "spacer"}}})");
    EXPECT_EQ(check({"--strict", "--notes"}).status, 0) << "a note is none";
}

TEST_F(Check, SaysWhyItFailsWhereItIsStrict) {
    const Finished asJSON = check({"--strict", "--notes", "--errors", "json"});
    EXPECT_EQ(asJSON.status, 1);
    EXPECT_EQ(asJSON.out, "");
    EXPECT_EQ(std::count(asJSON.err.begin(), asJSON.err.end(), '\n'), 4) << "one line each, no note";
    EXPECT_THAT(asJSON.err, StartsWith(R"({"error":{"type":"Diagnostic","kind":"unknown-key","codingPath":)"
                                       R"(["nodes","main","children",0,"fontsize"],"message":"unknown key )"));
    EXPECT_THAT(asJSON.err, HasSubstr(R"("file":"a.json","line":7,"column":49}})"));
    EXPECT_EQ(errorText(asJSON, "kind"), "model-alpha-ff");
    EXPECT_EQ(errorText(asJSON, "file"), "m.json");
    for (const char* format : {"json", "sarif", "github"}) {
        SCOPED_TRACE(format);
        EXPECT_EQ(check({"--strict", "--errors", "json", "--format", format}).err, asJSON.err);
        EXPECT_THAT(check({"--strict", "--format", format}).err, StartsWith("a.json:7:49: warning: unknown key"));
    }
}

TEST_F(Check, WritesEveryErrorInTheOrderOfTheText) {
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [
{"type": "text", "content": "{{initServerParam.a}}"},
{"type": "text", "content": "{{initServerParam.b}}"}]}}})");
    const Finished text = check({});
    EXPECT_EQ(text.status, 1);
    const std::size_t first = text.err.find("a.json:2:29: error: key path not found in model: [\"a\"]");
    const std::size_t second = text.err.find("a.json:3:29: error: ");
    EXPECT_EQ(first, 0U);
    EXPECT_LT(first, second);
    EXPECT_NE(second, std::string::npos);
    EXPECT_THAT(text.err.substr(0, text.err.find('\n')), EndsWith(" [unresolved-expression]"));
    const Finished json = check({"--errors", "json"});
    EXPECT_EQ(std::count(json.err.begin(), json.err.end(), '\n'), 2);
    EXPECT_THAT(json.err, StartsWith(R"({"error":{"type":"ModelContextError","kind":"ResolveExpression",)"));
}

TEST_F(Check, GoesOnAfterWhatDecodingEndsAt) {
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [
{"type": "txt", "content": "a"},
{"type": "text"}]}}})");
    const Finished text = check({});
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.err, StartsWith("a.json:2:10: error: "));
    EXPECT_THAT(text.err, HasSubstr("\na.json:3:1: error: "));
    EXPECT_THAT(text.err, HasSubstr("\n2 errors in 1 document\n"));
    const Finished json = check({"--errors", "json"});
    EXPECT_EQ(std::count(json.err.begin(), json.err.end(), '\n'), 1) << "what every verb ends at";
    EXPECT_EQ(errorText(json, "kind"), "dataCorrupted");
}

TEST_F(Check, FixesInPlace) {
    const mode_t mode = 0640;
    ASSERT_EQ(::chmod(place.path("a.json").c_str(), mode), 0);
    const Finished finished = check({"--fix"});
    EXPECT_EQ(finished.status, 0);
    std::string fixed(doubtful);
    fixed.replace(fixed.find("fontsize"), 8, "fontSize");
    fixed.replace(fixed.find("Bold"), 4, "bold");
    EXPECT_EQ(place.read("a.json"), fixed);
    EXPECT_EQ(place.read("m.json"), tint) << "only documents are changed";
    EXPECT_THAT(finished.err, StartsWith("a.json:7:49: fixed: unknown key \"fontsize\" in text; did you mean"));
    EXPECT_THAT(finished.err, HasSubstr("a.json:8:41: warning: a reference's own modifiers"));
    struct stat status {};
    ASSERT_EQ(::stat(place.path("a.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, mode);
    EXPECT_THAT(place.files(), ElementsAre("a.json", "m.json"));
    const Finished again = check({"--fix"});
    EXPECT_EQ(again.err.find("fixed:"), std::string::npos);
}

TEST_F(Check, FixesErrorsOneAfterTheOther) {
    place.write(
        "a.json",
        R"({"version": "1.0", "nodes": {"main": {"type": "vstak", "children": [{"type": "txt", "contents": 1}]}}})");
    const Finished finished = check({"--fix"});
    EXPECT_EQ(
        place.read("a.json"),
        R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{"type": "text", "content": 1}]}}})");
    EXPECT_EQ(finished.status, 0);
}

TEST_F(Check, TellsProgramsWhatItFixed) {
    for (const std::string format : {"json", "sarif", "github"}) {
        SCOPED_TRACE(format);
        place.write("a.json", doubtful);
        const Finished finished = check({"--fix", "--format", format});
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.err, "");
        expectGolden("fixed-" + format + ".txt", finished.out);
    }
}

TEST_F(Check, SaysWhereFixesWereInTheTextAsItWas) {
    place.write(
        "a.json",
        R"({"version": "1.0", "nodes": {"main": {"type": "vstak", "children": [{"type": "txt", "contents": 1}]}}})");
    const Finished finished = check({"--fix"});
    EXPECT_THAT(finished.err, HasSubstr("a.json:1:47: fixed: \"vstak\""));
    EXPECT_THAT(finished.err, HasSubstr("a.json:1:78: fixed: \"txt\""));
    EXPECT_THAT(finished.err, HasSubstr("a.json:1:85: fixed: unknown key \"contents\""));
}

TEST_F(Check, FixesThatCannotBeWrittenAreNone) {
    place.write("f/a.json", doubtful);
    if (::geteuid() == 0) GTEST_SKIP() << "root may write everything";
    ASSERT_EQ(::chmod(place.path("f/a.json").c_str(), 0440), 0);
    const Finished finished = place.run({"check", "f/a.json", "--fix", "--format", "json"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.out, HasSubstr("unknown-key"));
    EXPECT_THAT(finished.out, Not(HasSubstr("\"fixed\"")));
}

TEST_F(Check, LeavesOutAFixThatWouldDoHarm) {
    constexpr std::string_view harmful =
        R"({"version": "1.0", "nodes": {"main": {"type": "progressView", "style": "linear", "value": 1,
            "lineWidth": 1, "colour": "red"}}})";
    place.write("a.json", harmful);
    const Finished finished = check({"--fix"});
    EXPECT_EQ(finished.status, 0);
    std::string raised(harmful);
    raised.replace(raised.find("1.0"), 3, "1.1");
    EXPECT_EQ(place.read("a.json"), raised) << "the key is left: a colour is no text";
    EXPECT_THAT(finished.err, HasSubstr("warning: unknown key \"colour\""));
}

TEST_F(Check, ErrorsStandInTheirPlace) {
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "text", "contents": 1}}})");
    const Finished text = check({});
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.err, StartsWith("a.json:1:38: error: "));
    EXPECT_THAT(text.err, HasSubstr(" [missing-key]\n"));
    EXPECT_THAT(text.err, HasSubstr("a.json:1:55: warning: unknown key \"contents\""));
    for (const char* format : {"text", "json", "sarif", "github"})
        EXPECT_EQ(errorText(check({"--errors", "json", "--format", format}), "kind"), "keyNotFound");
}

TEST_F(Check, LooksAtAllFamiliesAndAppearances) {
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello to everyone",
        "fontSize": 20, "modifiers": [{"type": "frame", "width": 300, "height": 30},
        {"type": "foregroundColor", "color": {"value": "#DDDDDD"}}]}}})");
    EXPECT_THAT(check({}).err, HasSubstr("(systemMedium; light)"));
    EXPECT_EQ(check({"--appearance", "dark"}).err, "");
    EXPECT_EQ(check({"--appearances", "dark"}).err, "");
    EXPECT_THAT(check({"--families", "systemSmall,systemLarge"}).err, HasSubstr("(systemSmall, systemLarge; light)"));
    EXPECT_THAT(check({"--families", "all"}).err,
                HasSubstr("accessoryCircular, accessoryRectangular, accessoryInline"));
    EXPECT_EQ(check({"--background", "#000000"}).err, "");
    EXPECT_THAT(check({"--size", "200x100"}).err, HasSubstr("(200x100; light)"));
}

TEST_F(Check, ManyDocumentsKeepTheirOrder) {
    std::vector<std::string> words{"check", "--model", "m.json", "--format", "github"};
    for (int i = 0; i < 40; ++i) {
        const std::string name = std::to_string(i) + ".json";
        place.write(name, i % 2 == 0 ? doubtful : hello);
        words.push_back(name);
    }
    const Finished finished = place.run(words);
    EXPECT_EQ(finished.status, 0);
    std::size_t before = 0;
    for (int i = 0; i < 40; i += 2) {
        const std::size_t found = finished.out.find("file=" + std::to_string(i) + ".json");
        ASSERT_NE(found, std::string::npos);
        EXPECT_GE(found, before);
        before = found;
    }
}

TEST_F(Check, CountsWhatItFinds) {
    place.write("clean.json", hello);
    place.write("broken.json", broken);
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* counts;
    } rows[] = {
        {"one", {"broken.json"}, "\n1 error in 1 document\n"},
        {"several of one", {"a.json", "--model", "m.json"}, "\n4 warnings in 1 document\n"},
        {"notes, too", {"a.json", "--model", "m.json", "--notes"}, "\n4 warnings, 1 note in 1 document\n"},
        {"several",
         {"a.json", "broken.json", "clean.json", "--model", "m.json"},
         "\n1 error, 4 warnings in 3 documents\n"},
        {"a file that is gone", {"clean.json", "gone.json"}, "\n1 error in 2 documents\n"},
        {"what is mended", {"a.json", "--model", "m.json", "--fix"}, "\n2 fixed, 2 warnings in 1 document\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_THAT(place.run(joined({"check"}, row.words)).err, EndsWith(row.counts));
    }
    EXPECT_EQ(place.run({"check", "clean.json"}).err, "") << "there is nothing to count";
    for (const std::vector<std::string>& form : {std::vector<std::string>{"--errors", "json"}, {"--format", "github"}})
        EXPECT_THAT(place.run(joined({"check", "broken.json"}, form)).err, Not(HasSubstr("in 1 document"))) << form[1];
}

TEST_F(Check, LooksAtTheSameMomentEveryDay) {
    // Minutes and seconds fit at that moment, hours do not.
    place.write("t.json", R"({"version": "1.1", "nodes": {"main": {"type": "timer", "timestamp": 1772358144,
        "modifiers": [{"type": "frame", "width": 50, "height": 22}]}}})");
    EXPECT_EQ(place.run({"check", "t.json"}).err, "");
    EXPECT_THAT(place.run({"check", "t.json", "--date", "2027-03-01T09:41:00Z"}).err, HasSubstr("[truncated-text]"));
}

TEST_F(Check, FailsForAPictureThatIsMissingWhereThatIsAsked) {
    place.write("p.json",
                R"({"version": "1.0", "nodes": {"main": {"type": "webImage", "url": "https://a.test/b.png"}}})");
    ::mkdir(place.path("none").c_str(), 0700);
    const struct {
        const char* why;
        std::vector<std::string> words;
        int status;
        const char* message;
    } rows[] = {
        {"it is only missing", {"check", "--image-cache-dir", "none"}, 0, "warning: no picture could be had from"},
        {"checked",
         {"check", "--image-cache-dir", "none", "--fail-on-missing"},
         1,
         "p.json:1:38: error: no picture could be had from the file \""},
        {"checked without asking", {"check", "--offline"}, 0, ""},
        {"checked and refused",
         {"check", "--offline", "--fail-on-missing"},
         1,
         "error: no picture could be had from \"https://a.test/b.png\""},
        {"checked, for programs",
         {"check", "--offline", "--fail-on-missing", "--errors", "json"},
         1,
         R"x("message":"no picture could be had from \"https://a.test/b.png\" (systemMedium)")x"},
        {"drawn", {"render", "--offline"}, 0, "warning: 1 picture is missing, since nothing may be fetched"},
        {"drawn and refused",
         {"render", "--offline", "--fail-on-missing", "-o", "o.png"},
         1,
         "error: MissingPicture: no picture could be had from 'https://a.test/b.png'\n"},
        {"drawn, for programs",
         {"render", "--offline", "--fail-on-missing", "--errors", "json", "-o", "o.png"},
         1,
         R"({"error":{"type":"TavrinError","kind":"MissingPicture","message":"no picture could be had from 'https://a.test/b.png'"}})"},
        {"drawn in many ways",
         {"render", "--offline", "--fail-on-missing", "--scales", "1,2", "-o", "m"},
         1,
         "MissingPicture: no picture could be had from 'https://a.test/b.png'\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> words = row.words;
        words.insert(words.begin() + 1, "p.json");
        const Finished finished = place.run(words);
        EXPECT_EQ(finished.status, row.status) << finished.err;
        EXPECT_THAT(finished.err, HasSubstr(row.message));
        EXPECT_FALSE(place.has("o.png"));
    }
}

/// A document with a key that is misspelled and two expressions.
constexpr std::string_view ofModels = R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [
  {"type": "text", "content": "{{initServerParam.a}}", "fontsize": 12},
  {"type": "text", "content": "{{initServerParam.b}}"}]}}})";

TEST_F(Check, ListsADocumentOnceWithAllItsModels) {
    place.write("w.json", ofModels);
    place.write("w.models/1.json", R"({"a": "x"})");
    place.write("w.models/2.json", R"({"a": "x", "b": "y"})");
    place.write("w.models/3.json", R"({"a": "x", "c": "y"})");
    const Finished json = place.run({"check", "w.json", "--format", "json"});
    EXPECT_EQ(json.status, 1);
    const JSON documents = *JSON::parse(json.out).find("documents");
    ASSERT_EQ(std::get<JSONArray>(documents.object()).size(), 1U) << json.out;
    const JSON& only = *documents.find(0);
    EXPECT_EQ(only.find("models")->description(), R"(["w.models/1.json","w.models/2.json","w.models/3.json"])");
    std::vector<std::string> found;
    for (const JSON& each : std::get<JSONArray>(only.find("diagnostics")->object())) {
        const JSON* const models = each.find("models");
        found.push_back(each.find("code")->description() + (models ? " " + models->description() : ""));
    }
    EXPECT_THAT(found, ElementsAre("unknown-key", R"(unresolved-expression ["w.models/1.json","w.models/3.json"])"));

    const std::string text = place.run({"check", "w.json"}).err;
    EXPECT_THAT(text, HasSubstr(" (with w.models/1.json, w.models/3.json) [unresolved-expression]"));
    EXPECT_THAT(text, EndsWith("1 error, 1 warning in 1 document\n"));
}

TEST_F(Check, FixesWhatIsFoundWithAnyModel) {
    place.write("w.json", ofModels);
    place.write("w.models/1.json", R"({"a": "x", "b": "y"})");
    place.write("w.models/2.json", R"({"a": "x", "b": "y"})");
    const Finished finished = place.run({"check", "w.json", "--fix", "--format", "json"});
    EXPECT_EQ(finished.status, 0) << finished.err;
    std::string fixed(ofModels);
    fixed.replace(fixed.find("fontsize"), 8, "fontSize");
    EXPECT_EQ(place.read("w.json"), fixed);
    const JSON only = *JSON::parse(finished.out).find("documents")->find(0);
    EXPECT_EQ(std::get<JSONArray>(only.find("fixed")->object()).size(), 1U) << "once, though two models show it";
}

TEST_F(Check, FixesNothingThatDoesHarmWithAnotherModel) {
    const auto document = [](const std::string& key) {
        return R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.)" + key +
               "}}\"}}}";
    };
    place.write("w.json", document("nmae"));
    place.write("w.models/1.json", R"({"nmae": "x"})");
    place.write("w.models/2.json", R"({"name": "x"})");
    EXPECT_THAT(place.run({"check", "w.json", "--fix"}).err,
                HasSubstr("did you mean \"name\"? (with w.models/2.json) [unresolved-expression]"));
    EXPECT_EQ(place.read("w.json"), document("nmae"));
    place.write("w.models/1.json", R"({"other": "x", "name": "x"})");
    EXPECT_EQ(place.run({"check", "w.json", "--fix"}).status, 0);
    EXPECT_EQ(place.read("w.json"), document("name"));
    // Nobody refers to the text, so that each model's wish is only a warning.
    const std::string unused = R"({"version": "1.0", "nodes": {"main": {"type": "color", "value": "#000000"}, )"
                               R"("unused": {"type": "text", "content": "{{initServerParam.nmae}}"}}})";
    place.write("w.json", unused);
    place.write("w.models/1.json", R"({"nmae": "x"})");
    const Finished finished = place.run({"check", "w.json", "--fix"});
    EXPECT_THAT(finished.err, ::testing::Not(HasSubstr("fixed"))) << "and not to and fro";
    EXPECT_EQ(place.read("w.json"), unused);
}

TEST_F(Check, MendsNothingWhileAModelCannotBeRead) {
    place.write("w.json", ofModels);
    place.write("v.json", hello);
    place.write("w.model.json", R"({"a": "x", "b": "y"})");
    place.write("w.widget.toml", R"(models = {systemSmall = "gone.json"}
families = ["systemSmall", "systemMedium"])");
    const Finished finished = place.run({"check", "w.json", "v.json", "--fix", "--format", "json"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(place.read("w.json"), ofModels);
    EXPECT_THAT(finished.out, HasSubstr("unknown-key"));
    EXPECT_THAT(finished.out, HasSubstr("\"error\": \"cannot read 'gone.json': No such file or directory\""));
}

TEST_F(Check, SaysWhatItCannotReadOrWrite) {
    EXPECT_EQ(errorText(place.run({"check", "gone.json", "--errors", "json"}), "type"), "IOError");
    const Finished json = place.run({"check", "gone.json", "a.json", "--format", "json"});
    EXPECT_EQ(json.status, 1);
    EXPECT_THAT(json.out, HasSubstr("cannot read 'gone.json'"));
}

TEST_F(Check, ReportsAModelThatIsNone) {
    place.write("broken.json", "{\n  \"a\": tru\n}");
    const struct {
        const char* why;
        std::string model;
        const char* json;
        const char* sarif;
        const char* github;
    } rows[] = {
        {"missing", "gone.json", "\"error\": \"cannot read 'gone.json': No such file or directory\"",
         "\"text\": \"cannot read 'gone.json': No such file or directory\"",
         "::error file=gone.json::cannot read 'gone.json': No such file or directory\n"},
        {"no JSON", "broken.json", "\"code\": \"not-json\"", "\"uri\": \"broken.json\"",
         "::error file=broken.json,line=2,"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        for (const auto& [format, part] : {std::pair{"json", row.json}, {"sarif", row.sarif}, {"github", row.github}}) {
            SCOPED_TRACE(format);
            const Finished finished = place.run({"check", "a.json", "--model", row.model, "--format", format});
            EXPECT_EQ(finished.status, 1);
            EXPECT_THAT(finished.out, HasSubstr(part));
            if (std::string_view(format) != "github") {
                EXPECT_NO_THROW(static_cast<void>(JSON::parse(finished.out)));
            }
            EXPECT_THAT(finished.err, HasSubstr("error: "));
        }
    }
}

}  // namespace
}  // namespace tavrin::cli
