// SPDX-License-Identifier: MIT
#include <cstdint>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/new/widget_template.h"
#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tests/preview/routes_fixture.h"

// What the page can ask of a folder's files.

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST_F(RoutesTest, ListAndReadFiles) {
    scratch_.write("a b/document.json", hello);
    scratch_.write("a b/model.json", "{\"a\": 1}");
    const JSON files = JSON::parse(get("/api/files").body);
    const JSON* first = files.find("files")->find(std::int64_t{0});
    EXPECT_EQ(first->find("path")->description(), "a b/document.json");
    EXPECT_EQ(first->find("kind")->description(), "document");
    EXPECT_EQ(first->find("model")->description(), "a b/model.json");
    EXPECT_EQ(files.find("files")->find(std::int64_t{1})->find("kind")->description(), "model");
    EXPECT_EQ(JSON::parse(get("/api/file", "path=a%20b%2Fdocument.json").body).find("text")->description(), hello);
    EXPECT_EQ(get("/api/file", "path=..%2Fsecret.json").status, 403);
    EXPECT_EQ(get("/api/file").status, 403);
}

TEST_F(RoutesTest, Save) {
    scratch_.write("a.json", "old");
    const std::string revision = folder_.read("a.json").revision;
    const std::string body = R"({"path": "a.json", "text": "new", "revision": ")" + revision + "\"}";
    EXPECT_EQ(post("/api/save", body).status, 200);
    EXPECT_EQ(scratch_.read("a.json"), "new");
    EXPECT_EQ(post("/api/save", body).status, 409);
    EXPECT_EQ(post("/api/save", R"({"path": "a.json"})").status, 400);
    EXPECT_EQ(post("/api/save", "{").status, 400);
}

TEST_F(RoutesTest, PairDocumentsWithTheirSettings) {
    scratch_.write("a.json", hello);
    scratch_.write("a.widget.toml", "families = [\"systemSmall\"]\n");
    scratch_.write("b.json", hello);
    scratch_.write("b.widget.toml", "family = 1\n");
    const JSON files = JSON::parse(get("/api/files").body);
    const auto fileAt = [&](std::int64_t at) { return files.find("files")->find(at); };
    EXPECT_EQ(fileAt(0)->find("settings")->find("families")->description(), R"(["systemSmall"])");
    EXPECT_EQ(fileAt(1)->find("kind")->description(), "settings");
    EXPECT_EQ(fileAt(2)->find("path")->description(), "b.json");
    EXPECT_THAT(fileAt(2)->find("fault")->description(), HasSubstr("b.widget.toml:1: settings have no 'family'"));
}

TEST_F(RoutesTest, TellWhatTheSettingsOfADocumentHold) {
    scratch_.write("w/a.json", hello);
    scratch_.write("w/a.widget.toml",
                   "screens = [\"430x932\", \"390x844\"]\ndate = 2026-11-21T16:30:00Z\ntime-zone = \"CET\"\n"
                   "appearance = \"dark\"\nbackground = \"none\"\n[models]\nsystemSmall = \"../small.json\"\n"
                   "systemLarge = \"/large.json\"\n");
    const JSON files = JSON::parse(get("/api/files").body);
    const JSON* const file = files.find("files")->find(std::int64_t{0});
    const JSON* const settings = file->find("settings");
    EXPECT_EQ(settings->find("families")->description(), "[]");
    EXPECT_EQ(settings->find("screens")->description(), R"(["430x932","390x844"])");
    EXPECT_EQ(settings->find("date")->description(), "1795278600");
    EXPECT_EQ(settings->find("timeZone")->description(), TimeZone::named("CET")->identifier());
    EXPECT_EQ(settings->find("appearance")->description(), "dark");
    EXPECT_EQ(settings->find("background")->description(), "none");
    EXPECT_EQ(file->find("models")->find("systemSmall")->description(), "small.json");
    const std::string outside = file->find("models")->find("systemLarge")->description();
    EXPECT_THAT(outside, StartsWith("../"));
    EXPECT_EQ(get("/api/file", "path=" + outside).status, 403);
}

TEST_F(RoutesTest, ShowWhatAWidgetCanBeginWith) {
    const JSON answer = JSON::parse(get("/api/templates").body);
    const auto& templates = std::get<JSONArray>(answer.find("templates")->object());
    ASSERT_EQ(templates.size(), widgetTemplates().size());
    for (const JSON& each : templates) {
        SCOPED_TRACE(each.find("name")->description());
        EXPECT_NE(each.find("summary")->description(), "");
        EXPECT_THAT(each.find("document")->description(), HasSubstr("\"nodes\""));
        EXPECT_THAT(each.find("model")->description(), StartsWith("{"));
        EXPECT_THAT(each.find("settings")->find("families")->description(), HasSubstr("systemMedium"));
    }
}

TEST_F(RoutesTest, BeginAWidget) {
    const std::string body = R"({"name": "widgets/steps.json", "template": "ring"})";
    const HTTPResponse made = post("/api/new", body);
    EXPECT_EQ(made.status, 200) << made.body;
    const JSON answer = JSON::parse(made.body);
    const JSON* const first = answer.find("files")->find(std::int64_t{0});
    EXPECT_EQ(first->find("path")->description(), "widgets/steps.json");
    EXPECT_EQ(first->find("revision")->description(), folder_.read("widgets/steps.json").revision);
    const WidgetTemplate& ring = *findTemplate("ring");
    EXPECT_EQ(scratch_.read("widgets/steps.json"), ring.document);
    EXPECT_EQ(scratch_.read("widgets/steps.model.json"), ring.model);
    EXPECT_EQ(scratch_.read("widgets/steps.widget.toml"), ring.settings);
    const struct {
        const char* body;
        unsigned status;
        const char* message;
    } rows[] = {
        {R"({"name": "widgets/steps", "template": "rows"})", 409, "'widgets/steps.json' is there already"},
        {R"({"name": "a", "template": "rings"})", 400, "there is no template 'rings'"},
        {R"({"name": "a"})", 400, "\"template\\\" must be a string"},
        {R"({"name": "", "template": "ring"})", 400, "a widget has a name"},
        {R"({"name": "a.model", "template": "ring"})", 400, "which would make it a model"},
        {R"({"name": "../a", "template": "ring"})", 403, "nothing can be called '../a.json' in the folder"},
        {R"({"name": ".a", "template": "ring"})", 403, "nothing can be called"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        const HTTPResponse refused = post("/api/new", row.body);
        EXPECT_EQ(refused.status, row.status);
        EXPECT_THAT(refused.body, HasSubstr(row.message));
    }
    EXPECT_EQ(folder_.files().size(), 3U);
}

TEST_F(RoutesTest, MakeFilesOfTexts) {
    const HTTPResponse both = post("/api/create", R"({"name": "a", "document": "{}", "model": "[]"})");
    EXPECT_EQ(both.status, 200) << both.body;
    EXPECT_EQ(scratch_.read("a.json"), "{}");
    EXPECT_EQ(scratch_.read("a.model.json"), "[]");
    EXPECT_EQ(post("/api/create", R"({"name": "b.json", "document": null, "model": "1"})").status, 200);
    EXPECT_EQ(scratch_.read("b.model.json"), "1");
    EXPECT_EQ(post("/api/create", R"({"name": "b", "document": "{}", "model": "2"})").status, 409);
    EXPECT_EQ(post("/api/create", R"({"name": "c"})").status, 400);
    EXPECT_EQ(post("/api/create", R"({"document": "{}"})").status, 400);
    EXPECT_EQ(post("/api/create", R"({"name": "d/", "document": "{}"})").status, 400);
    EXPECT_EQ(post("/api/create", R"({"name": "node_modules/d", "document": "{}"})").status, 403);
    EXPECT_EQ(folder_.files().size(), 3U);
    EXPECT_EQ(scratch_.read("b.model.json"), "1");
}

}  // namespace
}  // namespace tavrin::cli
