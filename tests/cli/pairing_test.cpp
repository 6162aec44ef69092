// SPDX-License-Identifier: MIT
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

// What lies beside a document belongs to it because of its name, whatever the verb.

namespace tavrin::cli {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// The text that a document shows, by its tree.
std::string shownText(const Finished& finished) {
    EXPECT_EQ(finished.status, 0) << finished.err;
    return JSON::parse(finished.out).find("text")->description();
}

TEST(Pairing, AModelHasTheDocumentsNameOrIsShared) {
    const char* const own = R"({"a": "own"})";
    const char* const shared = R"({"a": "shared"})";
    const char* const further = R"({"a": "further"})";
    const struct {
        const char* why;
        std::vector<PlacedFile> files;
        std::vector<std::string> words;
        const char* expected;
    } rows[] = {
        {"of its own name", {{"w.model.json", own}, {"model.json", shared}}, {"w.json"}, "own"},
        {"shared", {{"model.json", shared}, {"w.models/x.json", further}}, {"w.json"}, "shared"},
        {"the first of several", {{"w.models/b.json", own}, {"w.models/a.json", further}}, {"w.json"}, "further"},
        {"the first of several shared ones", {{"models/a.json", further}}, {"w.json"}, "further"},
        {"of another document", {{"v.model.json", own}}, {"w.json"}, "{{initServerParam.a}}"},
        {"an option wins", {{"w.model.json", own}, {"o.json", further}}, {"w.json", "--model", "o.json"}, "further"},
        {"by family",
         {{"w.model.json", own}, {"s.json", shared}, {"w.widget.toml", "[models]\nsystemSmall = \"s.json\"\n"}},
         {"w.json", "--family", "systemSmall"},
         "shared"},
        {"of another family",
         {{"w.model.json", own}, {"s.json", shared}, {"w.widget.toml", "[models]\nsystemSmall = \"s.json\"\n"}},
         {"w.json"},
         "own"},
        {"of the first family that it is meant for",
         {{"s.json", shared}, {"widget.toml", "families = [\"systemSmall\"]\nmodels = {systemSmall = \"s.json\"}\n"}},
         {"w.json"},
         "shared"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("w.json", greeting);
        place.write(row.files);
        EXPECT_EQ(shownText(place.run(joined({"tree"}, row.words))), row.expected);
    }
}

TEST(Pairing, AFolderIsAWidget) {
    const Workplace place;
    place.write("agenda/document.json", greeting);
    place.write("agenda/model.json", R"({"a": "today"})");
    place.write("agenda/widget.toml", "families = [\"systemSmall\", \"systemLarge\"]\n");
    EXPECT_EQ(shownText(place.run({"tree", "agenda"})), "today");
    EXPECT_EQ(shownText(place.runIn("agenda", {"tree", "."})), "today");
    EXPECT_EQ(place.run({"render", "agenda", "--scale", "1"}).status, 0);
    EXPECT_TRUE(place.has("agenda.png"));
    EXPECT_EQ(place.run({"render", "agenda", "-o", "out", "--families", "meant", "--scale", "1"}).status, 0);
    EXPECT_TRUE(place.has("out/agenda/systemSmall-light@1x.png"));
    EXPECT_TRUE(place.has("out/agenda/systemLarge-light@1x.png"));
    EXPECT_FALSE(place.has("out/agenda/systemMedium-light@1x.png"));
}

TEST(Pairing, AFolderHasAllDocumentsAndNoModels) {
    const Workplace place;
    for (const char* name : {"w/a.json", "w/deep/b.json", "w/c/document.json"}) place.write(name, greeting);
    for (const char* name : {"w/a.model.json", "w/deep/model.json", "w/c/document.models/x.json", "w/notes.json"})
        place.write(name, R"({"a": "x"})");
    for (const char* name : {"w/.hidden.json", "w/node_modules/d.json", "w/.git/e.json", "w/widget.schema.json"})
        place.write(name, greeting);
    const Finished finished = place.run({"check", "w", "--format", "json"});
    EXPECT_EQ(finished.status, 0) << finished.err;
    std::vector<std::string> documents;
    const JSON found = JSON::parse(finished.out);
    for (const JSON& each : std::get<JSONArray>(found.find("documents")->object()))
        documents.push_back(each.find("document")->description() + " " + each.find("model")->description());
    EXPECT_THAT(documents, ElementsAre("w/a.json w/a.model.json", "w/c/document.json w/c/document.models/x.json",
                                       "w/deep/b.json w/deep/model.json"));
}

TEST(Pairing, AModelIsNoDocument) {
    const Workplace place;
    place.write("a.json", greeting);
    place.write("a.model.json", R"({"a": "x"})");
    place.write("b/c.json", greeting);
    place.write("b/model.json", R"({"a": "y"})");
    place.write("d/model.json", hello);
    EXPECT_EQ(place.run({"render", "a.json", "a.model.json", "b/c.json", "b/model.json", "--scale", "1"}).status, 0);
    EXPECT_TRUE(place.has("a.png"));
    EXPECT_TRUE(place.has("c.png"));
    EXPECT_FALSE(place.has("model.png"));
    for (const auto& [model, document] : {std::pair{"a.model.json", "a.json"}, std::pair{"b/model.json", "b/c.json"}}) {
        const Finished alone = place.run({"check", model});
        EXPECT_EQ(alone.status, 2);
        EXPECT_THAT(alone.err, HasSubstr("'" + std::string(model) + "' is the model of '" + document + "'"));
    }
    EXPECT_EQ(place.run({"check", "d/model.json"}).status, 0) << "a document may be called so";
}

TEST(Pairing, AModelIsKnownByItsNameWhateverItHolds) {
    const Workplace place;
    const char* const model = R"({"a": "x", "nodes": 3})";
    const std::vector<std::string> models{"a.model.json", "a.models/x.json", "b/model.json", "c/models/x.json"};
    for (const char* const document : {"a.json", "b/d.json", "c/document.json"}) place.write(document, greeting);
    for (const std::string& name : models) place.write(name, model);
    const Finished finished = place.run({"check", "."});
    EXPECT_EQ(finished.status, 0) << finished.err;
    for (const std::string& name : models)
        EXPECT_THAT(place.run({"check", name}).err, HasSubstr("' is the model of '")) << name;
}

TEST(Pairing, PicturesAreFetchedWhereThatIsAsked) {
    const Workplace place;
    const char* const document =
        R"({"version": "1.0", "nodes": {"main": {"type": "webImage", "url": "http://127.0.0.1:9/none.png"}}})";
    place.write("a.json", document);
    place.write("pictures/none", "");
    EXPECT_THAT(place.run({"check", "a.json"}).err, HasSubstr("from the file"));
    EXPECT_THAT(place.run({"check", "a.json", "--fetch", "none"}).err, HasSubstr("from the file"));
    EXPECT_THAT(place.run({"check", "a.json", "--fetch", "all"}).err, Not(HasSubstr("from the file")));
}

TEST(Pairing, SettingsHoldWhereOptionsSayNothing) {
    const Workplace place;
    place.write("w.json", hello);
    const auto frame = [&](const std::vector<std::string>& more) {
        const Finished finished = place.run(joined({"explain", "w.json", "--format", "json"}, more));
        EXPECT_EQ(finished.status, 0) << finished.err;
        return finished.out;
    };
    const std::string small = frame({"--family", "systemSmall"});
    const std::string wide = frame({"--family", "systemSmall", "--screen", "430x932"});
    const std::string medium = frame({});
    ASSERT_NE(small, wide);
    place.write("w.widget.toml", "families = [\"systemSmall\", \"systemMedium\"]\nscreens = [\"430x932\"]\n");
    EXPECT_EQ(frame({}), wide);
    EXPECT_EQ(frame({"--screen", "390x844"}), small);
    EXPECT_EQ(frame({"--screen", "390x844", "--family", "systemMedium"}), medium);
}

TEST(Pairing, SettingsSayHowItLooks) {
    const Workplace place;
    place.write("w.json", R"({"version": "1.0", "nodes": {"main": {"type": "timer"}}})");
    const auto bytes = [&](const std::vector<std::string>& more) {
        EXPECT_EQ(place.run(joined({"render", "w.json", "-o", "w.png", "--scale", "1"}, more)).status, 0);
        return place.read("w.png");
    };
    const std::string asked = bytes({"--date", "2026-11-21T08:05:00Z", "--time-zone", "Europe/Madrid", "--appearance",
                                     "dark", "--background", "none"});
    const std::string light = bytes({"--date", "2026-11-21T08:05:00Z", "--background", "none"});
    ASSERT_NE(asked, light);
    place.write("w.widget.toml",
                "date = 2026-11-21T09:05:00+01:00\ntime-zone = \"Europe/Madrid\"\nappearance = \"dark\"\n"
                "background = \"none\"\n");
    EXPECT_EQ(bytes({}), asked);
    EXPECT_EQ(bytes({"--appearance", "light"}), light);
}

TEST(Pairing, ChecksAndSnapshotsLookAtAllThatAWidgetIsMeantFor) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("w.model.json", R"({"a": "x"})");
    place.write("w.models/none.json", R"({"b": "x"})");
    place.write("w.widget.toml",
                "families = [\"systemSmall\", \"systemLarge\"]\nscreens = [\"390x844\", \"430x932\"]\n");
    place.write("v.json", hello);
    const Finished check = place.run({"check", "w.json"});
    EXPECT_EQ(check.status, 1);
    EXPECT_THAT(check.err, HasSubstr("key path not found in model"));
    EXPECT_THAT(check.err, HasSubstr("1 error in 1 document"));
    const Finished snapshot = place.run({"snapshot", "w.json", "v.json", "--dir", "s", "--scale", "1"});
    EXPECT_EQ(snapshot.status, 1) << "one model is not enough for the document";
    EXPECT_THAT(place.files(),
                ElementsAre("s/v/systemMedium-light@1x.json", "s/v/systemMedium-light@1x.png",
                            "s/w/systemLarge-390x844-light@1x.json", "s/w/systemLarge-390x844-light@1x.png",
                            "s/w/systemLarge-430x932-light@1x.json", "s/w/systemLarge-430x932-light@1x.png",
                            "s/w/systemSmall-390x844-light@1x.json", "s/w/systemSmall-390x844-light@1x.png",
                            "s/w/systemSmall-430x932-light@1x.json", "s/w/systemSmall-430x932-light@1x.png", "v.json",
                            "w.json", "w.model.json", "w.models/none.json", "w.widget.toml"));
}

TEST(Pairing, NamesStayTheSameWhenAModelIsAdded) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("w.models/b.json", R"({"a": "b"})");
    const std::vector<std::string> words{"snapshot", "w.json", "--dir", "s", "--scale", "1"};
    EXPECT_EQ(place.run(words).out, "1 snapshot: 1 new\n");
    EXPECT_TRUE(place.has("s/w/systemMedium-light@1x-b.png"));
    place.write("w.models/a.json", R"({"a": "a"})");
    EXPECT_EQ(place.run(words).out, "2 snapshots: 1 the same, 1 new\n");
    place.write("w.model.json", R"({"a": "own"})");
    EXPECT_EQ(place.run(words).out, "3 snapshots: 2 the same, 1 new\n");
    EXPECT_TRUE(place.has("s/w/systemMedium-light@1x.png")) << "a model of its own needs no name";
}

TEST(Pairing, AFamilysOwnModelStandsBesideThoseOfAFolder) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("s.json", R"({"a": "s"})");
    place.write("w.models/b.json", R"({"a": "b"})");
    place.write("w.widget.toml", "families = [\"systemSmall\", \"systemLarge\"]\nmodels = {systemSmall = \"s.json\"}");
    EXPECT_EQ(place.run({"snapshot", "w.json", "--dir", "s", "--scale", "1"}).out, "3 snapshots: 3 new\n");
    for (const char* name : {"systemSmall-light@1x", "systemSmall-light@1x-b", "systemLarge-light@1x-b"})
        EXPECT_TRUE(place.has("s/w/" + std::string(name) + ".png")) << name;
    EXPECT_EQ(place.run({"check", "w.json"}).status, 0);
}

TEST(Pairing, AFolderOfModelsIsBounded) {
    const Workplace place;
    place.write("w.json", greeting);
    for (int i = 0; i <= 2000; ++i) place.write("w.models/" + std::to_string(i) + ".json", R"({"a": "x"})");
    const std::string message = "there are more than 2000 models in 'w.models'; keep fewer in one folder";
    for (const std::vector<std::string>& words : {std::vector<std::string>{"check", "w.json"},
                                                  {"tree", "w.json"},
                                                  {"snapshot", "w.json", "--dir", "s"},
                                                  {"render", "w.json"},
                                                  {"render", "w.json", "--models", "w.models", "-o", "out"}}) {
        SCOPED_TRACE(words.front());
        const Finished finished = place.run(words);
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err, HasSubstr(message));
    }
    std::filesystem::remove(place.path("w.models/0.json"));
    EXPECT_EQ(place.run({"tree", "w.json"}).status, 0);
}

TEST(Pairing, WhatIsWrongBesideOneWidgetLeavesTheOthers) {
    const struct {
        const char* why;
        std::vector<PlacedFile> files;
        const char* message;
    } rows[] = {
        {"settings", {{"b.widget.toml", "\nfamilys = []"}}, "b.widget.toml:2:1: error: settings have no 'familys'"},
        {"a model", {{"b.widget.toml", "models = {systemMedium = \"gone.json\"}"}}, "error: cannot read 'gone.json'"},
    };
    const struct {
        std::vector<std::string> words;
        const char* made;
        const char* out;
    } verbs[] = {
        {{"render", "a.json", "b.json", "c.json", "--scale", "1"}, "c.png", ""},
        {{"render", "a.json", "b.json", "c.json", "-o", "m", "--families", "systemMedium,systemSmall"},
         "m/c/systemSmall-light@3x.png",
         ""},
        {{"snapshot", "a.json", "b.json", "c.json", "--dir", "s", "--strict"},
         "s/b/systemMedium-light@3x.png",
         "3 snapshots: 2 the same, 1 failed\n"},
        {{"check", "a.json", "b.json", "c.json"}, "c.json", ""},
    };
    for (const auto& row : rows)
        for (const auto& verb : verbs) {
            SCOPED_TRACE(std::string(row.why) + " for " + verb.words.front());
            const Workplace place;
            for (const char* name : {"a.json", "b.json"}) place.write(name, hello);
            place.write("c.json",
                        R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": " ", "fontsize": 1}}})");
            ASSERT_EQ(place.run({"snapshot", "a.json", "b.json", "c.json", "--dir", "s"}).status, 0);
            place.write(row.files);
            const Finished finished = place.run(verb.words);
            EXPECT_EQ(finished.status, 1);
            EXPECT_THAT(finished.err, HasSubstr(row.message));
            EXPECT_EQ(finished.err.find("error: "), finished.err.rfind("error: ")) << finished.err;
            EXPECT_EQ(finished.out, verb.out);
            EXPECT_TRUE(place.has(verb.made));
            if (verb.words.front() == "check") {
                EXPECT_THAT(finished.err, HasSubstr("fontsize")) << "the last one was looked at";
            }
            const Finished alone = place.run({"render", "b.json", "--scale", "1"});
            EXPECT_EQ(alone.status, 1);
            EXPECT_THAT(alone.err, HasSubstr(row.message));
        }
}

TEST(Pairing, AWidgetWithoutItsModelSaysSoOnce) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("v.json", hello);
    const std::string said = "there are expressions, but no model";
    EXPECT_THAT(place.run({"render", "w.json"}).err, HasSubstr(said));
    EXPECT_THAT(place.run({"layout", "w.json"}).err, HasSubstr(said));
    EXPECT_THAT(place.run({"render", "v.json"}).err, IsEmpty());
    const std::string several = place.run({"render", "w.json", "-o", "out", "--families", "all"}).err;
    EXPECT_EQ(several.find(said), several.rfind(said));
    EXPECT_NE(several.find(said), std::string::npos);
    place.write("model.json", R"({"a": "x"})");
    EXPECT_THAT(place.run({"render", "w.json"}).err, IsEmpty());
}

TEST(Pairing, SettingsAtFaultSayWhere) {
    const struct {
        const char* why;
        std::string text;
        const char* place;
        const char* message;
    } rows[] = {
        {"no TOML", "families = [", "1:13", "error: "},
        {"an unknown key", "date = 2026-11-21T08:05:00Z\nfamilys = []", "2:1",
         "no 'familys'; did you mean 'families'?"},
        {"an unknown key like none", "x = 1", "1:1", "families, screens, date"},
        {"another kind", "families = \"systemSmall\"", "1:12", "a list of the names of widget families, not a text"},
        {"an empty list", "families = []", "1:12", "not none"},
        {"a number in a list", "families = [1]", "1:13", "not a number"},
        {"an unknown family", "families = [\"systemSmall\",\n  \"systemTiny\"]", "2:3", "systemTiny"},
        {"a family twice", "families = [\"systemSmall\", \"systemSmall\"]", "1:28", "twice"},
        {"a family that a screen has not", "screens = [\"390x844\"]\nfamilies = [\"systemExtraLarge\"]", "2:13",
         "systemExtraLarge"},
        {"a screen that is none", "screens = [\"big\"]", "1:12", "338x158"},
        {"a date without a zone", "date = 2026-11-21T08:05:00", "1:8", "2026-03-01T09:41:00Z"},
        {"a time zone", "time-zone = \"Mars\"", "1:13", "Europe/Madrid"},
        {"an appearance", "appearance = \"drak\"", "1:14", "did you mean 'dark'?"},
        {"a background", "background = \"blue\"", "1:14", "#FF9500"},
        {"models of no family", "[models]\nsystemSmal = \"a.json\"", "2:1", "did you mean 'systemSmall'?"},
        {"a model that is no name", "[models]\nsystemSmall = 1", "2:15", "the name of a model's file"},
        {"a model from standard input", "[models]\nsystemSmall = \"-\"", "2:15", "the name of a model's file, not '-'"},
        {"a model without a name", "[models]\nsystemSmall = \"\"", "2:15", "the name of a model's file, not ''"},
        {"behind other letters", "# é\nappearance = \"é\" # é", "2:14", "light"},
        {"no UTF-8", "# \xFF", "1:1", "UTF-8"},
        {"too long", std::string(70'000, '\n'), "1:1", "64 KiB"},
    };
    const Workplace place;
    place.write("w.json", hello);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        place.write("widget.toml", row.text);
        const Finished finished = place.run({"tree", "w.json"});
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err,
                    AllOf(HasSubstr("widget.toml:" + std::string(row.place) + ": error: "), HasSubstr(row.message)));
        const Finished json = place.run({"check", "w.json", "--errors", "json"});
        EXPECT_EQ(errorText(json, "type"), "SettingsError");
        EXPECT_EQ(errorText(json, "file"), "widget.toml");
    }
}

TEST(Pairing, AFolderOfNothingSaysSo) {
    const Workplace place;
    place.write("w/model.json", R"({"a": 1})");
    const Finished finished = place.run({"render", "w"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, AllOf(HasSubstr("there is no document in 'w'"), Not(HasSubstr("model.json"))));
}

}  // namespace
}  // namespace tavrin::cli
