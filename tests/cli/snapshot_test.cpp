// SPDX-License-Identifier: MIT
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

std::string documentWith(std::string_view text, std::string_view size = "20") {
    return R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{"type": "circle"},
              {"type": "text", "content": ")" +
           std::string(text) + R"(", "fontSize": )" + std::string(size) + "}]}}}";
}

TEST(Snapshot, IsRecordedComparedAndUpdated) {
    const Workplace place;
    const std::vector<std::string> words{"snapshot", "w.json", "--dir", "kept", "--scales", "1,2"};
    std::vector<std::string> updating = words;
    updating.emplace_back("--update");

    place.write("w.json", documentWith("Hello"));
    const Finished first = place.run(words);
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.err, "");
    EXPECT_EQ(first.out, "2 snapshots: 2 new\n");
    EXPECT_THAT(place.files(),
                ElementsAre("kept/w/systemMedium-light@1x.json", "kept/w/systemMedium-light@1x.png",
                            "kept/w/systemMedium-light@2x.json", "kept/w/systemMedium-light@2x.png", "w.json"));
    EXPECT_EQ(place.run(words).out, "2 snapshots: 2 the same\n");

    const std::string kept = place.read("kept/w/systemMedium-light@1x.png");
    place.write("w.json", documentWith("Hallo"));
    const Finished different = place.run(words);
    EXPECT_EQ(different.status, 1);
    EXPECT_EQ(different.out, "2 snapshots: 2 different\n");
    EXPECT_THAT(different.err,
                AllOf(HasSubstr("w.json:2:15: error: 2 snapshots differ: the Text: text was \"Hello\" "
                                "and is \"Hallo\"\n    2 |               {\"type\": \"text\""),
                      HasSubstr("\n      at nodes.main.children[1]\n      in "
                                "w/systemMedium-light@1x: "),
                      HasSubstr(" of 53404 pixels, within "), HasSubstr("\n      in w/systemMedium-light@2x: "),
                      HasSubstr("\nnote: what differs is shown in kept/failures/index.html\n")));
    EXPECT_EQ(place.read("kept/w/systemMedium-light@1x.png"), kept) << "what is kept stays";
    EXPECT_TRUE(place.has("kept/failures/w/systemMedium-light@2x.png"));

    const Finished updated = place.run(updating);
    EXPECT_EQ(updated.status, 0);
    EXPECT_EQ(updated.out, "2 snapshots: 2 updated\n");
    EXPECT_FALSE(place.has("kept/failures")) << "nothing differs any more";
    EXPECT_EQ(place.run(updating).out, "2 snapshots: 2 the same\n");
}

TEST(Snapshot, HasOneNameHoweverItsDocumentIsWritten) {
    const Workplace place;
    place.write("widgets/w.json", hello);
    place.write("deep/er/readme", "");
    EXPECT_EQ(place.run({"snapshot", "widgets/w.json", "--dir", "kept"}).out, "1 snapshot: 1 new\n");
    const std::string top = place.path("x").parent_path().filename().string();
    for (const std::string& document : {std::string("./widgets/../widgets/w.json"), "../" + top + "/widgets/w.json",
                                        place.path("widgets/w.json").string()}) {
        SCOPED_TRACE(document);
        EXPECT_EQ(place.run({"snapshot", document, "--dir", "kept"}).out, "1 snapshot: 1 the same\n");
    }
    EXPECT_EQ(place.runIn("widgets", {"snapshot", "w.json", "--dir", "../kept"}).out, "1 snapshot: 1 the same\n");
    EXPECT_EQ(place.run({"snapshot", "widgets/w.json", "--dir", "deep/er"}).status, 0);
    EXPECT_TRUE(place.has("deep/er/widgets/w/systemMedium-light@3x.png")) << "not below the snapshots' parent";
    EXPECT_EQ(place.run({"snapshot", "widgets/w.json", "--dir", "."}).status, 0);
    EXPECT_TRUE(place.has("widgets/w/systemMedium-light@3x.png"));
}

TEST(Snapshot, ShowsAlwaysTheSameMoment) {
    const Workplace place;
    place.write("w.json", R"({"version": "1.0", "nodes": {"main": {"type": "timer", "timestamp": 0}}})");
    EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "a"}).status, 0);
    EXPECT_EQ(
        place.run({"snapshot", "w.json", "--dir", "b", "--date", "2026-03-01T09:41:00Z", "--time-zone", "UTC"}).status,
        0);
    const char* const file = "/w/systemMedium-light@3x.png";
    EXPECT_EQ(place.read("a" + std::string(file)), place.read("b" + std::string(file)));
    EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "a", "--date", "2026-03-01T09:41:01Z"}).status, 1);
}

TEST(Snapshot, SaysWhatDiffersAndWhere) {
    const Workplace place;
    const struct {
        const char* why;
        std::string after;
        const char* message;
        const char* where;  // line, column and path
    } rows[] = {
        {"a property", documentWith("A", "24"), "the Text: font.system was 20 and is 24",
         "2:15 nodes.main.children[1]"},
        {"a view more",
         R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{"type": "circle"},
            {"type": "text", "content": "A", "fontSize": 20}, {"type": "spacer"}]}}})",
         "the VStack: children[2] is new, a Spacer", "2:63 nodes.main.children[2]"},
        {"a view less",
         R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{"type": "circle"}]}}})",
         "the VStack: children[1] was removed, a Text", "1:38 nodes.main"},
        {"another view", R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}}})",
         "the VStack: view was \"VStack\" and is \"Spacer\", and 4 more differences", "1:38 nodes.main"},
        {"a view behind a reference",
         R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [{"type": "circle"}, {"type": "node",
            "name": "t"}]}, "t": {"type": "text", "content": "B", "fontSize": 20}}})",
         "the Text: text was \"A\" and is \"B\"", "2:34 nodes.t"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        place.write("w.json", documentWith("A"));
        EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "kept", "--update"}).status, 0);
        place.write("w.json", row.after);
        const Finished finished = place.run({"snapshot", "w.json", "--dir", "kept", "-o", "wrong", "--errors", "json"});
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(errorText(finished, "type"), "SnapshotDifference");
        EXPECT_EQ(errorText(finished, "file"), "w.json");
        EXPECT_EQ(errorText(finished, "message"), "1 snapshot differs: " + std::string(row.message));
        const std::string line = errorText(finished, "line") + ":" + errorText(finished, "column");
        const JSON results =
            JSON::parse(place.run({"snapshot", "w.json", "--dir", "kept", "-o", "wrong", "--format", "json"}).out);
        const JSON cause = *results.find("causes")->find(0);
        CodingPath path;
        const JSON steps = *cause.find("path");
        for (const JSON& step : std::get<JSONArray>(steps.object())) {
            const std::string text = step.description();
            path.push_back(text.find_first_not_of("0123456789") == std::string::npos ? CodingKey(std::stoul(text))
                                                                                     : CodingKey(text));
        }
        EXPECT_EQ(line + " " + toText(path), row.where);
        EXPECT_EQ(cause.find("message")->description(), row.message);
        EXPECT_EQ(cause.find("line")->description() + ":" + cause.find("column")->description(), line);
        EXPECT_TRUE(place.has("wrong/w/systemMedium-light@3x.png"));
    }
}

TEST(Snapshot, DifferencesAreGroupedByTheirCause) {
    const Workplace place;
    const auto write = [&](const char* first, const char* second, std::string_view size = "12") {
        place.write("w.json", R"({"version": "1.0", "nodes": {"main": {"type": "vstack", "children": [
{"type": "text", "content": ")" + std::string(first) +
                                  R"(", "fontSize": )" + std::string(size) + R"(},
{"type": "text", "content": ")" + std::string(second) +
                                  "\"}]}}}");
    };
    const std::vector<std::string> words{
        "snapshot", "w.json", "--dir", "kept", "--families", "systemSmall,systemMedium", "--appearances", "all"};
    write("{{initServerParam.a}}", "B");
    place.write("w.models/one.json", R"({"a": "one"})");
    place.write("w.models/two.json", R"({"a": "two"})");
    ASSERT_EQ(place.run(words).out, "8 snapshots: 8 new\n");

    write("{{initServerParam.a}}", "C", "14");
    const Finished both = place.run(joined(words, {"--format", "json"}));
    const JSON causes = *JSON::parse(both.out).find("causes");
    ASSERT_EQ(std::get<JSONArray>(causes.object()).size(), 2U);
    EXPECT_EQ(causes.find(0)->find("message")->description(), "the Text: font.system was 12 and is 14");
    EXPECT_EQ(causes.find(1)->find("message")->description(), "the Text: text was \"B\" and is \"C\"");
    for (const int at : {0, 1}) EXPECT_EQ(std::get<JSONArray>(causes.find(at)->find("snapshots")->object()).size(), 8U);
    EXPECT_THAT(both.err, AllOf(HasSubstr("w.json:2:1: error: 8 snapshots differ: the Text: font"),
                                HasSubstr("w.json:3:1: error: 8 snapshots differ: the Text: text")));

    write("{{initServerParam.a}}", "B");
    place.write("w.models/two.json", R"({"a": "zwei"})");
    const Finished model = place.run(words);
    EXPECT_EQ(model.out, "8 snapshots: 4 the same, 4 different\n");
    EXPECT_THAT(model.err, HasSubstr("w.json:2:1: error: 4 snapshots differ: the Text: text was \"two\" and is "));

    place.write("w.models/one.json", R"({"a": "eins"})");
    EXPECT_THAT(place.run(words).err,
                HasSubstr("error: 8 snapshots differ: the Text: text was \"one\" and is \"eins\", or the like\n"));
}

TEST(Snapshot, OfAnotherSizeOrDamaged) {
    const Workplace place;
    place.write("w.json", hello);
    const std::vector<std::string> words{"snapshot", "w.json", "--dir", "kept"};
    EXPECT_EQ(place.run(words).status, 0);
    EXPECT_EQ(place.run({"render", "w.json", "-o", "kept/w/systemMedium-light@3x.png", "--scale", "2"}).status, 0);
    EXPECT_THAT(
        place.run(words).err,
        HasSubstr("w.json: error: 1 snapshot differs: the picture is 1014 × 474 pixels instead of 676 × 316\n"));
    place.write("kept/w/systemMedium-light@3x.png", "no picture");
    EXPECT_THAT(place.run(words).err,
                HasSubstr("w.json: error: 1 snapshot differs: the kept picture cannot be read as one\n"));
    EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "kept", "--update"}).out, "1 snapshot: 1 updated\n");
    place.write("kept/w/systemMedium-light@3x.json", "{");
    EXPECT_THAT(place.run(words).err,
                HasSubstr("w.json: error: 1 snapshot differs: the kept tree cannot be read as one\n"));
}

TEST(Snapshot, ToleratesWhatItIsToldTo) {
    const Workplace place;
    const auto shade = [](const char* color) {
        return R"({"version": "1.0", "nodes": {"main": {"type": "color", "value": ")" + std::string(color) + "\"}}}";
    };
    place.write("w.json", shade("#808080"));
    EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "kept", "--scale", "1"}).status, 0);
    const std::string tree = place.read("kept/w/systemMedium-light@1x.json");
    place.write("w.json", shade("#808083"));
    EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "other", "--scale", "1"}).status, 0);
    place.write("kept/w/systemMedium-light@1x.json", place.read("other/w/systemMedium-light@1x.json"));
    EXPECT_THAT(place.run({"snapshot", "w.json", "--dir", "kept", "--scale", "1", "--tolerance", "2"}).err,
                HasSubstr("w.json: error: 1 snapshot differs: only pixels do, no view, as other fonts or pictures make "
                          "them\n      in w/systemMedium-light@1x: 53404 of 53404 pixels, within 338 × 158 at 0, 0 and "
                          "by up to 3 of 255\n"));
    EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "kept", "--scale", "1", "--tolerance", "3"}).status, 0);
}

TEST(Snapshot, StrictlyFailsWithoutOne) {
    const Workplace place;
    place.write("w.json", hello);
    const Finished finished = place.run({"snapshot", "w.json", "--dir", "kept", "--strict"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("w.json: error: w/systemMedium-light@3x has no snapshot in kept"));
    EXPECT_EQ(finished.out, "1 snapshot: 1 failed\n");
    EXPECT_FALSE(place.has("kept"));
}

TEST(Snapshot, SaysHowToRecordOneThatIsMissing) {
    const Workplace place;
    place.write("w.json", hello);
    EXPECT_THAT(place.run({"snapshot", "w.json", "--dir", "kept", "--strict"}).err,
                HasSubstr("w/systemMedium-light@3x has no snapshot in kept; run without --strict to record it\n"));
}

TEST(Snapshot, ThatBelongsToNoPictureIsTold) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("b.json", hello);
    ASSERT_EQ(place.run({"snapshot", "a.json", "b.json", "--dir", "kept"}).err, "");
    place.write("kept/readme@home.png", "is none");
    place.write("kept/failures/x/systemMedium-light@3x.png", "is none");
    place.write("kept/failures/x/systemMedium-light@3x.json", "is none");
    const Finished lenient = place.run({"snapshot", "a.json", "--dir", "kept"});
    EXPECT_EQ(lenient.status, 0);
    EXPECT_EQ(lenient.err, "note: 1 snapshot in kept belongs to no picture of this run: b/systemMedium-light@3x\n");
    const Finished strict = place.run({"snapshot", "a.json", "--dir", "kept", "--strict"});
    EXPECT_EQ(strict.status, 1);
    EXPECT_THAT(strict.err, HasSubstr("error: 1 snapshot in kept belongs to no picture of this run: "
                                      "b/systemMedium-light@3x; delete them, or draw what they show\n"));
    EXPECT_EQ(strict.out, "1 snapshot: 1 the same\n");
    EXPECT_EQ(place.run({"snapshot", "a.json", "b.json", "--dir", "kept", "--strict"}).status, 0);
}

TEST(Snapshot, ShowsWhatDiffersOnAPage) {
    const Workplace place;
    const std::vector<std::string> words{"snapshot", "w.json", "v.json", "--dir", "kept"};
    place.write("w.json", documentWith("Hello"));
    place.write("v.json", hello);
    ASSERT_EQ(place.run(words).status, 0);
    EXPECT_FALSE(place.has("kept/failures"));
    place.write("w.json", documentWith("Hallo"));
    ASSERT_EQ(place.run(words).status, 1);
    EXPECT_EQ(place.read("kept/failures/.gitignore"), "*\n");
    EXPECT_THAT(place.read("kept/failures/index.html"),
                AllOf(HasSubstr("<h2>w.json:2:15: nodes.main.children[1]</h2>"),
                      HasSubstr("<p>1 snapshot differs: the Text: text was &quot;Hello&quot;"),
                      HasSubstr("<h3>w/systemMedium-light@3x</h3>"), HasSubstr("src=\"./w/systemMedium-light@3x.png\""),
                      Not(HasSubstr(">v"))));
    EXPECT_EQ(place.run({"snapshot", "v.json", "--dir", "kept"}).status, 0);
    EXPECT_TRUE(place.has("kept/failures/.gitignore")) << "another document's picture is still there";
    place.write("w.json", documentWith("Hello"));
    ASSERT_EQ(place.run(words).status, 0);
    EXPECT_FALSE(place.has("kept/failures"));
}

TEST(Snapshot, IsToldToOtherPrograms) {
    const Workplace place;
    place.write("w.json", documentWith("Hello"));
    place.write("v.json", hello);
    const auto run = [&](const char* format) {
        return place.run({"snapshot", "w.json", "v.json", "--dir", "kept", "--format", format});
    };
    EXPECT_EQ(run("github").out, "");
    place.write("w.json", documentWith("Hallo"));
    const struct {
        const char* format;
        std::vector<const char*> parts;
    } rows[] = {
        {"text", {"2 snapshots: 1 the same, 1 different\n"}},
        {"github",
         {"::error file=w.json,line=2,col=15,title=nodes.main.children[1]::1 snapshot differs: the Text: ",
          "is \"Hallo\"%0Aw/systemMedium-light@3x\n"}},
        {"junit",
         {"<testsuite name=\"tavrin snapshot\" tests=\"3\" failures=\"1\">",
          "<testcase classname=\"w.json\" name=\"nodes.main.children[1]\">\n      <failure message=\"w.json:2:15: ",
          "is &quot;Hallo&quot;\">\nw/systemMedium-light@3x\n",
          "<testcase classname=\"v.json\" name=\"v/systemMedium-light@3x\"/>"}},
        {"json",
         {"\"verdict\": \"different\"", "\"verdict\": \"same\"", "\"picture\": \"w/systemMedium-light@3x.png\"",
          "\"difference\": \""}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format);
        const Finished finished = run(row.format);
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err, HasSubstr("w.json:2:15: error: 1 snapshot differs: "));
        for (const char* const part : row.parts) EXPECT_THAT(finished.out, HasSubstr(part));
        EXPECT_EQ(std::string_view(row.format) == "json", finished.out.starts_with("{"));
    }
    const JSON results = JSON::parse(run("json").out);
    EXPECT_EQ(results.find("orphans")->description(), "[]");
}

TEST(Snapshot, ThatFailsIsToldToOtherProgramsWithTheFileAtFault) {
    const Workplace place;
    place.write({{"w.json", std::string(greeting)},
                 {"w.model.json", "{\n1}"},
                 {"v.json", std::string(hello)},
                 {"v.widget.toml", "\nsize = 3"},
                 {"u.json", std::string(greeting)},
                 {"u.model.json", "{}"},
                 {"t.json", std::string(hello)}});
    const struct {
        const char* format;
        std::vector<const char*> parts;
    } rows[] = {
        {"github",
         {"::error file=w.model.json,line=2,col=1::", "::error file=v.widget.toml,line=2,col=",
          "::error file=u.json,line=1,col=66::key path", "::error file=t.json::t/systemMedium-light@3x has no"}},
        {"junit",
         {"classname=\"w.json\" name=\"w/systemMedium-light@3x\">\n      <failure message=\"w.model.json:2:1: ",
          "<failure message=\"v.widget.toml:2:", "<failure message=\"u.json:1:66: key path not found",
          "<failure message=\"t.json: t/systemMedium-light@3x has no snapshot"}},
        {"json",
         {"\"file\": \"w.model.json\",\n      \"line\": 2,\n      \"column\": 1\n",
          "\"file\": \"v.widget.toml\",\n      \"line\": 2,\n      \"column\": ",
          "\"file\": \"u.json\",\n      \"line\": 1,\n      \"column\": 66\n", "\"file\": \"t.json\"\n"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format);
        const Finished finished = place.run(
            {"snapshot", "w.json", "v.json", "u.json", "t.json", "--dir", "kept", "--strict", "--format", row.format});
        EXPECT_EQ(finished.status, 1);
        for (const char* const part : row.parts) EXPECT_THAT(finished.out, HasSubstr(part));
    }
}

TEST(Snapshot, OfADocumentThatFails) {
    const Workplace place;
    place.write("bad.json", broken);
    const Finished finished = place.run({"snapshot", "bad.json", "--dir", "kept", "--families", "all"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.err.find("bad.json:4:"), finished.err.rfind("bad.json:4:")) << "said once";
    EXPECT_FALSE(place.has("kept"));
}

TEST(Snapshot, ThatFailsNamesTheModelOfSeveral) {
    const Workplace place;
    place.write({{"w.json", std::string(greeting)}, {"w.models/x.json", R"({"a": "x"})"}, {"w.models/y.json", "{}"}});
    const char* const words = "error: key path not found in model: [\"a\"], with the model w.models/";
    const std::vector<std::string> command{"snapshot", "w.json", "--dir", "kept", "--scales", "1,2"};
    const Finished one = place.run(command);
    EXPECT_EQ(one.out, "4 snapshots: 2 new, 2 failed\n");
    EXPECT_THAT(one.err, HasSubstr("w.json:1:66: " + (words + std::string("y.json\n"))));
    EXPECT_EQ(one.err.find("error: "), one.err.rfind("error: ")) << "said once";

    place.write("w.models/z.json", "{}");
    const Finished two = place.run(command);
    EXPECT_THAT(two.err, AllOf(HasSubstr(words + std::string("y.json\n")), HasSubstr(words + std::string("z.json\n"))));

    place.write("w.models/z.json", "{");
    EXPECT_THAT(place.run(command).err, AllOf(HasSubstr("w.models/z.json:1:"), Not(HasSubstr("model w.models/z"))));
    place.write("w.json", broken);
    EXPECT_THAT(place.run(command).err, Not(HasSubstr("with the model"))) << "it is the document's alone";
    place.write("w.json", greeting);
    EXPECT_THAT(place.run({"snapshot", "w.json", "--model", "w.models/y.json", "--dir", "kept"}).err,
                HasSubstr("key path not found in model: [\"a\"]\n"));
}

TEST(Snapshot, IsReplacedAsAPairOrNotAtAll) {
    const Workplace place;
    place.write("w.json", hello);
    const std::string model(255 - std::string_view("systemMedium-light@3x-.png").size(), 'm');
    place.write("models/" + model + ".json", "{}");
    const std::string name = "kept/w/systemMedium-light@3x-" + model;
    for (const bool isThere : {false, true}) {
        if (isThere) place.write(name + ".png", "old");
        const std::vector<std::string> before = place.files();
        const Finished finished = place.run({"snapshot", "w.json", "--models", "models", "--dir", "kept", "--update"});
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err, HasSubstr("cannot write '" + name + ".json': File name too long"));
        EXPECT_EQ(place.files(), before);
        EXPECT_TRUE(!isThere || place.read(name + ".png") == "old");
    }
}

TEST(Snapshot, WaitsForNoPipe) {
    for (const char* const suffix : {".png", ".json"}) {
        SCOPED_TRACE(suffix);
        const Workplace place;
        place.write("w.json", hello);
        EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "kept"}).status, 0);
        const std::string file = "kept/w/systemMedium-light@3x" + std::string(suffix);
        std::filesystem::remove(place.path(file));
        ASSERT_EQ(::mkfifo(place.path(file).c_str(), 0600), 0);
        for (const char* const option : {"--strict", "--update"}) {
            const Finished finished = place.run({"snapshot", "w.json", "--dir", "kept", option});
            EXPECT_EQ(finished.status, 1);
            EXPECT_THAT(finished.err, HasSubstr("cannot read '" + file + "': Not a regular file"));
        }
    }
}

TEST(Snapshot, IsRefused) {
    const Workplace place;
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {"no folder", {}, "wants --dir DIR"},
        {"update and strict", {"--dir", "d", "--update", "--strict"}, "give one of them"},
        {"a tolerance too large", {"--dir", "d", "--tolerance", "256"}, "from 0 to 255, not '256'"},
        {"a format of pictures",
         {"--dir", "d", "--format", "png"},
         "--format takes text, github, junit or json, not 'png'"},
        {"a tolerance in words", {"--dir", "d", "--tolerance", "some"}, "not 'some'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined({"snapshot", "w.json"}, row.words));
        EXPECT_EQ(finished.status, 2);
        EXPECT_THAT(finished.err, HasSubstr(row.message));
    }
}

}  // namespace
}  // namespace tavrin::cli
