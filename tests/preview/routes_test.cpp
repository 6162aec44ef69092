// SPDX-License-Identifier: MIT
#include "cli/preview/routes.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/images/web_image_hasher.h"
#include "tavrin/json/json.h"
#include "tests/preview/requests.h"
#include "tests/preview/routes_fixture.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST_F(RoutesTest, ServeThePage) {
    const HTTPResponse page = get("/");
    EXPECT_THAT(page.body, StartsWith("<!doctype html>"));
    EXPECT_THAT(page.body, HasSubstr("nonce=\"" + page.nonce + "\""));
    EXPECT_NE(get("/").nonce, page.nonce);
    EXPECT_THAT(get("/preview.js").contentType, StartsWith("text/javascript"));
    EXPECT_THAT(get("/preview.css").contentType, StartsWith("text/css"));
    EXPECT_EQ(get("/other").status, 404);
}

TEST_F(RoutesTest, NameTheMethodThatIsUnderstood) {
    EXPECT_EQ(post("/", "").status, 405);
    EXPECT_EQ(post("/", "").allow, "GET, HEAD");
    for (const char* path : {"/api/save", "/api/new", "/api/create"}) EXPECT_EQ(get(path).status, 405) << path;
    EXPECT_EQ(get("/api/save").allow, "POST");
    EXPECT_EQ(routes_.answer({.method = "DELETE", .path = "/api/file"}).status, 405);
}

TEST_F(RoutesTest, Render) {
    const HTTPResponse drawn = render(hello);
    EXPECT_EQ(drawn.contentType, "application/octet-stream");
    EXPECT_THAT(drawn.body, HasSubstr("\n\x89PNG"));
}

TEST_F(RoutesTest, TellUntilWhenAPictureIsValid) {
    const auto headOf = [&](std::string_view document) {
        const std::string body = render(document).body;
        return JSON::parse(body.substr(0, body.find('\n')));
    };
    EXPECT_EQ(headOf(hello).find("validUntil"), nullptr) << "it never changes";
    const JSON timer = headOf(R"({"version": "1.2", "nodes": {"main": {"type": "timer", "timestamp": 1500000128}}})");
    ASSERT_NE(timer.find("validUntil"), nullptr);
    EXPECT_EQ(timer.find("validUntil")->description(), "1500000001");
}

TEST_F(RoutesTest, ExplainWhatIsDrawn) {
    const JSON explained = JSON::parse(post("/api/explain", drawingOf(hello)).body);
    EXPECT_EQ(explained.find("layout")->find("view")->description(), "Text");
    const JSON* const first = explained.find("explanation")->find("views")->find(std::int64_t{0});
    EXPECT_EQ(first->find("origin")->description(), "nodes.main");
    EXPECT_NE(JSON::parse(post("/api/explain", drawingOf("{}")).body).find("error"), nullptr);
}

TEST_F(RoutesTest, Check) {
    constexpr std::string_view misspelt =
        R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello", "fontsize": 20}}})";
    const JSON findings = JSON::parse(post("/api/check", drawingOf(misspelt)).body);
    const JSON* const first = findings.find(std::int64_t{0});
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->find("code")->description(), "unknown-key");
    EXPECT_EQ(first->find("severity")->description(), "warning");
}

TEST_F(RoutesTest, CheckEachFamilyThatIsShown) {
    const std::string document =
        R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "Pale", "modifiers": )"
        R"([{"type": "foregroundColor", "color": {"value": "#FAFAFA"}}]}}})";
    const auto messageIn = [&](std::string_view looks) {
        std::string body = drawingOf(document);
        body.insert(body.rfind('}'), looks);
        const HTTPResponse answer = post("/api/check", body);
        if (answer.status != 200) return std::to_string(answer.status);
        return JSON::parse(answer.body).find(std::int64_t{0})->find("message")->description();
    };
    EXPECT_THAT(messageIn(R"(, "screen": "390x844", "families": "systemSmall,systemLarge", "appearances": "light")"),
                HasSubstr("systemSmall, systemLarge; light"));
    EXPECT_EQ(messageIn(R"(, "screen": "390x844", "families": "systemTiny")"), "400");
    EXPECT_EQ(messageIn(R"(, "families": "systemSmall")"), "400");
    EXPECT_EQ(messageIn(R"(, "appearances": "pale")"), "400");
}

TEST_F(RoutesTest, DrawABackground) {
    const std::string automatic = render(hello, R"(, "background": "auto")").body;
    const auto pictureOf = [](const std::string& body) { return body.substr(body.find('\n')); };
    EXPECT_EQ(pictureOf(automatic), pictureOf(render(hello).body));
    EXPECT_NE(pictureOf(automatic), pictureOf(render(hello, R"(, "background": "none")").body));
    EXPECT_NE(pictureOf(automatic), pictureOf(render(hello, R"(, "background": "#FF9500")").body));
    EXPECT_EQ(render(hello, R"(, "background": "pale")").status, 400);
}

TEST_F(RoutesTest, ServeTheSchema) { EXPECT_NE(JSON::parse(get("/api/schema").body).find("$defs"), nullptr); }

TEST_F(RoutesTest, TellWhereADocumentFails) {
    const HTTPResponse failed = render(R"({"version": "1.0", "nodes": {"main": {"type": "texts"}}})");
    EXPECT_EQ(failed.status, 200);
    EXPECT_EQ(failed.contentType, "application/json");
    const JSON answer = JSON::parse(failed.body);
    EXPECT_EQ(answer.find("error")->find("line")->description(), "1");
    EXPECT_EQ(answer.find("error")->find("codingPath")->description(), R"(["nodes","main","type"])");
    EXPECT_EQ(answer.find("error")->find("file")->description(), "document");
}

TEST_F(RoutesTest, KnowWhatTakesLong) {
    for (const char* path : {"/api/render", "/api/explain", "/api/check"})
        EXPECT_TRUE(Routes::takesLong({.method = "POST", .path = path})) << path;
    for (const char* path : {"/", "/api/files", "/api/save", "/api/new", "/api/create", "/api/events", "/nothing"})
        EXPECT_FALSE(Routes::takesLong({.method = "POST", .path = path})) << path;
}

TEST_F(RoutesTest, KeepToTheBudget) {
    const Routes poor(folder_, {.fetchPolicy = FetchPolicy::none, .budget = {.steps = 1}});
    for (const char* path : {"/api/render", "/api/explain", "/api/check"}) {
        const HTTPRequest request{.method = "POST", .path = path, .body = drawingOf(hello)};
        EXPECT_THAT(poor.answer(request).body, HasSubstr("more than 1 steps")) << path;
        EXPECT_THAT(routes_.answer(request).body, Not(HasSubstr("steps"))) << path;
        request.cancel.cancel();
        EXPECT_THAT(routes_.answer(request).body, HasSubstr("cancelled")) << path;
    }
}

TEST_F(RoutesTest, RefuseDrawingsThatAreNone) {
    EXPECT_EQ(post("/api/render", "[]").status, 400);
    EXPECT_EQ(render(hello, R"(, "model": 3)").status, 400);
    const std::string wrong[] = {
        R"({"document": "{}", "family": "", "width": 1e9, "height": 1, "scale": 1, "date": 0})",
        R"({"document": "{}", "family": "", "width": 9, "height": 1, "scale": 1, "date": 0,
                                     "appearance": "light", "timeZone": "Nowhere"})"};
    for (const std::string& body : wrong) EXPECT_EQ(post("/api/render", body).status, 400) << body;
}

TEST_F(RoutesTest, DrawThePicturesBesideADocumentAndNoOtherFiles) {
    const std::filesystem::path source = TAVRIN_SOURCE_DIR "/tests/images/pictures/baseline.jpg";
    const std::string address = "https://example.com/beside.jpg";
    std::filesystem::create_directories(scratch_.path() / "a/pictures");
    std::filesystem::copy(source, scratch_.path() / "a/pictures" / WebImageHasher(address));
    PreviewOptions options;
    const auto drawn = [&](const std::string& url, const std::string& more = {}) {
        const std::string document =
            R"({"version": "1.2", "nodes": {"main": {"type": "webImage", "url": ")" + url + R"("}}})";
        const Routes online(folder_, options);
        const std::string body =
            online.answer({.method = "POST", .path = "/api/render", .body = drawingOf(document, more)}).body;
        return body.substr(body.find('\n') + 1);
    };
    const std::string nothing = drawn("file:///nowhere.jpg");
    EXPECT_THAT(nothing, StartsWith("\x89PNG"));
    const std::string beside = drawn(address, R"(, "path": "a/document.json")");
    EXPECT_NE(beside, nothing);
    options.maxImageSize = Size{4, 4};
    EXPECT_NE(drawn(address, R"(, "path": "a/document.json")"), beside) << "scaled down";
    EXPECT_EQ(drawn("file://" + source.string()), nothing);
    EXPECT_EQ(drawn("file://" + source.string(), R"(, "path": "a/document.json")"), nothing);
}

TEST_F(RoutesTest, AreRefusedToOthersThroughTheServer) {
    scratch_.write("a.json", "{}");
    RunningServer running([this](const HTTPRequest& request) { return routes_.answer(request); });
    const std::string end = "Connection: close\r\n\r\n";
    const std::string files = running.send("GET /SECRET/api/files HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\n" + end);
    EXPECT_THAT(files, StartsWith("HTTP/1.1 200 OK"));
    EXPECT_THAT(files, HasSubstr("X-Content-Type-Options: nosniff"));
    EXPECT_THAT(files, HasSubstr("Cross-Origin-Resource-Policy: same-origin"));
    EXPECT_THAT(files, HasSubstr("a.json"));
    const std::string rebound = running.send("GET /SECRET/api/files HTTP/1.1\r\nHost: evil.example:PORT\r\n" + end);
    EXPECT_THAT(rebound, StartsWith("HTTP/1.1 421"));
    const std::string foreign =
        running.send("GET /SECRET/api/files HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\nOrigin: http://evil.example\r\n" + end);
    EXPECT_THAT(foreign, StartsWith("HTTP/1.1 403"));
    EXPECT_THAT(running.send("GET /SECRET/../../etc/passwd HTTP/1.1\r\nHost: 127.0.0.1:PORT\r\n" + end),
                StartsWith("HTTP/1.1 404"));
}

}  // namespace
}  // namespace tavrin::cli
