// SPDX-License-Identifier: MIT
#include "cli/serve/picture_service.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/strings/base64.h"
#include "tavrin/widget/widget.h"
#include "tests/network/web_server.h"
#include "tests/serve/running_service.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

const std::string dated = "date=2026-03-01T09:41:00Z";
const std::string drawnTotal = "tavrin_pictures_drawn_total";

std::string member(const ClientAnswer& answer, std::string_view key) {
    const JSON problem = JSON::parse(answer.body);
    const JSON* const value = problem.find(key);
    return value ? value->description() : "";
}

std::string base64url(std::string_view text) {
    std::string digits = base64(text);
    digits.erase(digits.find_last_not_of('=') + 1);
    return digits;  // of texts that need neither of the two other digits
}

bool turnsTrue(const std::function<bool()>& condition) {
    for (int i = 0; i < 5000 && !condition(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}

TEST(PictureService, DrawsWidgetsOfTheFolder) {
    const RunningService running;
    const struct {
        std::string target;
        std::string type;
        std::string start;
    } rows[] = {
        {"/v1/widgets/color.png", "image/png", "\x89PNG"},
        {"/v1/widgets/color.svg", "image/svg\\+xml", "<?xml"},
        {"/v1/widgets/color.pdf?scale=1", "application/pdf", "%PDF"},
        {"/v1/widgets/color.webp?family=systemSmall&appearance=dark", "image/webp", "RIFF"},
        {"/v1/widgets/color.jpg?quality=50&timeZone=Europe/Madrid", "image/jpeg", "\xFF\xD8"},
        {"/v1/widgets/color.jpeg?rounded=1", "image/jpeg", "\xFF\xD8"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.target);
        const ClientAnswer answer = running.get(row.target);
        EXPECT_EQ(answer.status, 200);
        EXPECT_THAT(answer.header("content-type"), MatchesRegex(row.type));
        EXPECT_THAT(answer.body, StartsWith(row.start));
        EXPECT_THAT(answer.header("etag"), MatchesRegex("\"[-_A-Za-z0-9]{22}\""));
        EXPECT_EQ(answer.header("cache-control"), "no-cache");
        const ClientAnswer head = running.ask("HEAD", row.target);
        EXPECT_EQ(head.status, 200);
        EXPECT_EQ(head.header("etag"), answer.header("etag"));
        EXPECT_EQ(head.header("content-length"), answer.header("content-length"));
    }
}

TEST(PictureService, DrawsTheSameBytesAsTheLibrary) {
    const RunningService running;
    const std::string model = R"({"a":"Hello"})";
    WidgetOptions options{.date = Date::parseRFC3339("2026-03-01T09:41:00Z"), .timeZone = TimeZone()};
    options.scale = 2;
    const std::string expected = Document(RunningService::greetingText).widget(model, options).encode();
    EXPECT_EQ(running.get("/v1/widgets/greeting.png?scale=2&" + dated + "&model=" + base64url(model)).body, expected);
    const std::string asValue = R"({"document": )" + std::string(RunningService::greetingText) +
                                R"(, "model": {"a":"Hello"}, "options": {"scale": 2, "date": "2026-03-01T09:41:00Z"}})";
    EXPECT_EQ(running.post("/v1/render", asValue).body, expected);
    const std::string asText =
        R"({"document": "{\"version\":\"1.0\",\"nodes\":{\"main\":{\"type\":\"text\",\"content\":\"{{initServerParam.a}}\"}}}",)"
        R"("model": "{\"a\":\"Hello\"}", "options": {"scale": 2, "date": "2026-03-01T09:41:00Z"}})";
    EXPECT_EQ(running.post("/v1/render", asText).body, expected);
}

TEST(PictureService, SaysWhatIsWrong) {
    const RunningService running;
    const std::string json = "Content-Type: application/json\r\n";
    running.write("broken.json", "{\n \"version\": \"1.0\",\n \"nodes\": {\"main\": {\"type\": \"no such\"}}}");
    const std::string doc = R"({"document": {"version":"1.0","nodes":{"main":{"type":"color","value":"FF0000"}}})";
    const struct {
        const char* why;
        std::string method;
        std::string target;
        std::string fields;
        std::string body;
        int status;
        std::string type;
    } rows[] = {
        {"no route", "GET", "/v1/nothing", "", "", 404, "RequestError"},
        {"no such widget", "GET", "/v1/widgets/gone.png", "", "", 404, "RequestError"},
        {"no picture's name", "GET", "/v1/widgets/color.gif", "", "", 404, "RequestError"},
        {"no name", "GET", "/v1/widgets/.png", "", "", 404, "RequestError"},
        {"no suffix", "GET", "/v1/widgets/color", "", "", 404, "RequestError"},
        {"a way up", "GET", "/v1/widgets/..%2Fcolor.png", "", "", 404, "RequestError"},
        {"a folder", "GET", "/v1/widgets/a%2Fcolor.png", "", "", 404, "RequestError"},
        {"a hidden file", "GET", "/v1/widgets/.color.png", "", "", 404, "RequestError"},
        {"a zero byte", "GET", "/v1/widgets/color%00.png", "", "", 404, "RequestError"},
        {"another method", "POST", "/v1/widgets/color.png", json, "{}", 405, "RequestError"},
        {"a method of no one", "BREW", "/healthz", "", "", 405, "RequestError"},
        {"an unknown option", "GET", "/v1/widgets/color.png?colour=red", "", "", 400, "RequestError"},
        {"an option twice", "GET", "/v1/widgets/color.png?scale=1&scale=1", "", "", 400, "RequestError"},
        {"an option of a wrong value", "GET", "/v1/widgets/color.png?scale=0", "", "", 400, "RequestError"},
        {"no value", "GET", "/v1/widgets/color.png?scale", "", "", 400, "RequestError"},
        {"two sizes", "GET", "/v1/widgets/color.png?family=systemSmall&size=1x1", "", "", 400, "RequestError"},
        {"another format than the path's", "GET", "/v1/widgets/color.png?format=svg", "", "", 400, "RequestError"},
        {"a folder of the server", "GET", "/v1/widgets/color.png?imageCacheDir=/etc", "", "", 400, "RequestError"},
        {"fonts of the server", "GET", "/v1/widgets/color.png?fontDir=/etc", "", "", 400, "RequestError"},
        {"more to fetch than may be", "GET", "/v1/widgets/color.png?fetch=all", "", "", 400, "RequestError"},
        {"no base64url", "GET", "/v1/widgets/color.png?model=%7B%7D", "", "", 400, "RequestError"},
        {"a model that is no JSON", "GET", "/v1/widgets/greeting.png?model=" + base64url("{"), "", "", 422,
         "DecodingError"},
        {"no such node", "GET", "/v1/widgets/broken.png", "", "", 422, "DecodingError"},
        {"a budget that does not do", "GET", "/v1/widgets/color.png?budgetSteps=1", "", "", 422, "TavrinError"},
        {"no type", "POST", "/v1/render", "", doc + "}", 415, "RequestError"},
        {"another type", "POST", "/v1/render", "Content-Type: text/plain\r\n", doc + "}", 415, "RequestError"},
        {"a compressed body", "POST", "/v1/render", json + "Content-Encoding: gzip\r\n", doc + "}", 415,
         "RequestError"},
        {"no JSON", "POST", "/v1/render", json, "{", 400, "RequestError"},
        {"no object", "POST", "/v1/render", json, "[]", 400, "RequestError"},
        {"no document", "POST", "/v1/render", json, "{}", 400, "RequestError"},
        {"an unknown member", "POST", "/v1/render", json, doc + R"(, "modell": {}})", 400, "RequestError"},
        {"a member twice", "POST", "/v1/render", json, doc + R"(, "model": {}, "model": {}})", 400, "RequestError"},
        {"options that are none", "POST", "/v1/render", json, doc + R"(, "options": []})", 400, "RequestError"},
        {"an unknown option in JSON", "POST", "/v1/render", json, doc + R"(, "options": {"x": 1}})", 400,
         "RequestError"},
        {"an option of a wrong type", "POST", "/v1/render", json, doc + R"(, "options": {"scale": "1"}})", 400,
         "RequestError"},
        {"a folder in JSON", "POST", "/v1/render", json, doc + R"(, "options": {"fontDir": "/etc"}})", 400,
         "RequestError"},
        {"a document at fault", "POST", "/v1/render", json, R"({"document": {"version": "1.0"}})", 422,
         "DecodingError"},
        {"no document to check", "POST", "/v1/check", json, R"({"model": {}})", 400, "RequestError"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const ClientAnswer answer = running.ask(row.method, row.target, row.fields, row.body);
        EXPECT_EQ(answer.status, row.status) << answer.body;
        EXPECT_EQ(answer.header("content-type"), "application/problem+json");
        EXPECT_EQ(answer.header("cache-control"), "no-store");
        EXPECT_EQ(member(answer, "status"), std::to_string(row.status));
        EXPECT_EQ(member(answer, "type"), row.type);
        EXPECT_NE(member(answer, "message"), "");
    }
    const ClientAnswer broken = running.get("/v1/widgets/broken.png");
    EXPECT_EQ(member(broken, "line"), "3");
    EXPECT_EQ(member(broken, "role"), "document");
    EXPECT_THAT(broken.body, HasSubstr(R"("path":["nodes","main","type"])"));
    EXPECT_EQ(running.ask("POST", "/healthz").header("allow"), "GET, HEAD");
    EXPECT_EQ(running.get("/v1/check").header("allow"), "POST");
}

TEST(PictureService, RefusesWhatIsTooLarge) {
    const RunningService running([](ServeSettings& settings) { settings.maxBodyBytes = 1000; });
    const std::string large(2000, ' ');
    EXPECT_EQ(running.post("/v1/render", large).status, 413);
    EXPECT_EQ(running.get("/v1/widgets/color.png?model=" + std::string(10000, 'a')).status, 414);
    EXPECT_EQ(running.get("/healthz", "X: " + std::string(20000, 'a') + "\r\n").status, 431);
    EXPECT_EQ(member(running.post("/v1/render", large), "status"), "413");
}

TEST(PictureService, AnswersWhatIsAskedOfItself) {
    const RunningService running;
    EXPECT_EQ(running.get("/healthz").status, 200);
    EXPECT_EQ(running.get("/readyz").status, 200);
    EXPECT_EQ(running.ask("HEAD", "/healthz").status, 200);
    EXPECT_NE(JSON::parse(running.get("/v1/schema").body).find("$defs"), nullptr);
    EXPECT_EQ(JSON::parse(running.get("/openapi.json").body).find("openapi")->description().substr(0, 3), "3.1");
    EXPECT_THAT(running.get("/metrics").header("content-type"), StartsWith("text/plain; version=0.0.4"));
    const std::string misspelt =
        R"({"document": {"version":"1.0","nodes":{"main":{"type":"text","contents":"Hello"}}}, "options": {}})";
    const ClientAnswer checked = running.post("/v1/check", misspelt);
    EXPECT_EQ(checked.status, 200);
    EXPECT_EQ(checked.header("content-type"), "application/json");
    EXPECT_THAT(checked.body, StartsWith("{\"diagnostics\":[{"));
    EXPECT_THAT(checked.body, HasSubstr("contents"));
}

TEST(PictureService, AnswersConditionalRequests) {
    const RunningService running;
    const std::string target = "/v1/widgets/color.png?" + dated;
    const std::string tag = running.get(target).header("etag");
    const struct {
        std::string known;
        int status;
    } rows[] = {
        {tag, 304},
        {"W/" + tag, 304},
        {"*", 304},
        {"\"other\", " + tag, 304},
        {"\"a,b\"," + tag, 304},
        {"\"other\"", 200},
        {"other", 200},
        {"\"unended", 200},
        {"", 200},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.known);
        for (const char* const method : {"GET", "HEAD"}) {
            ClientConnection client = running.connection();
            client.send(RunningService::request(method, target, "If-None-Match: " + row.known + "\r\n") +
                        RunningService::request("GET", "/healthz"));
            const ClientAnswer answer = client.receive(std::string(method) == "HEAD");
            EXPECT_EQ(answer.status, row.status);
            EXPECT_EQ(answer.header("etag"), tag);
            EXPECT_EQ(answer.header("cache-control"), "no-cache");
            EXPECT_EQ(answer.body.empty(), row.status == 304 || std::string(method) == "HEAD");
            EXPECT_EQ(client.receive().status, 200) << "nothing stands between two answers";
        }
    }
}

TEST(PictureService, SaysHowLongPicturesHold) {
    const RunningService running;
    const std::string timer = R"({"version":"1.0","nodes":{"main":{"type":"timer","date":"2026-03-01T09:41:10Z"}}})";
    const auto ageOf = [&](const std::string& document, const std::string& options) {
        const ClientAnswer answer =
            running.post("/v1/render", R"({"document": )" + document + R"(, "options": )" + options + "}");
        EXPECT_EQ(answer.status, 200) << answer.body;
        return answer.header("cache-control");
    };
    EXPECT_EQ(ageOf(std::string(RunningService::colorText), "{}"), "max-age=86400");
    EXPECT_EQ(ageOf(std::string(RunningService::colorText), R"({"date": "2026-03-01T09:41:00Z"})"), "max-age=86400");
    EXPECT_THAT(ageOf(timer, R"({"date": "2026-03-01T09:41:00Z"})"), MatchesRegex("max-age=[0-9]"));
}

TEST(PictureService, DrawsOnceWhatHolds) {
    const RunningService running;
    const std::string clock = R"({"version":"1.0","nodes":{"main":{"type":"timer","date":"2099-01-01T00:00:00Z"}}})";
    running.write("clock.json", clock);
    const auto drawn = [&] { return running.metric(drawnTotal); };
    const std::string first = running.get("/v1/widgets/color.png").body;
    EXPECT_EQ(running.get("/v1/widgets/color.png").body, first);
    EXPECT_EQ(running.ask("HEAD", "/v1/widgets/color.png").status, 200);
    EXPECT_EQ(drawn(), 1);
    EXPECT_EQ(running.get("/v1/widgets/color.png?scale=1").status, 200);
    EXPECT_EQ(drawn(), 2) << "other options are another picture";
    running.write("color.json", R"({"version":"1.0","nodes":{"main":{"type":"color","value":"00FF00"}}})");
    EXPECT_NE(running.get("/v1/widgets/color.png").body, first) << "the file has changed";
    EXPECT_EQ(drawn(), 3);
    EXPECT_EQ(running.get("/v1/widgets/clock.png").status, 200);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    EXPECT_EQ(running.get("/v1/widgets/clock.png").status, 200);
    EXPECT_EQ(drawn(), 5) << "the time has moved on";
}

TEST(PictureService, KeepsNothingWithoutACache) {
    const RunningService running([](ServeSettings& settings) { settings.cacheBytes = 0; });
    EXPECT_EQ(running.get("/v1/widgets/color.png").status, 200);
    EXPECT_EQ(running.get("/v1/widgets/color.png").status, 200);
    EXPECT_EQ(running.metric(drawnTotal), 2);
}

TEST(PictureService, StaysInItsFolder) {
    const RunningService running;
    const std::filesystem::path outside = running.folder.string() + "-outside.json";
    std::ofstream(outside) << RunningService::colorText;
    std::filesystem::create_symlink(outside, running.folder / "leads-out.json");
    std::filesystem::create_symlink("color.json", running.folder / "stays.json");
    std::filesystem::create_symlink("loop.json", running.folder / "loop.json");
    std::filesystem::create_directory(running.folder / "folder.json");
    ASSERT_EQ(::mkfifo((running.folder / "pipe.json").c_str(), 0600), 0);
    EXPECT_EQ(running.get("/v1/widgets/leads-out.png").status, 404);
    EXPECT_EQ(running.get("/v1/widgets/stays.png").status, 200);
    EXPECT_EQ(running.get("/v1/widgets/loop.png").status, 404);
    EXPECT_EQ(running.get("/v1/widgets/folder.png").status, 404);
    EXPECT_EQ(running.get("/v1/widgets/pipe.png").status, 404) << "and is not waited for";
    std::filesystem::remove(outside);
}

TEST(PictureService, PairsDocumentsWithWhatLiesBesideThem) {
    const RunningService running;
    const auto drawn = [&](const std::string& name, const std::string& query) {
        const ClientAnswer answer = running.get("/v1/widgets/" + name + ".png?" + dated + query);
        EXPECT_EQ(answer.status, 200) << answer.body;
        return answer.body;
    };
    const auto greeting = [&](std::string_view model) {
        return drawn("greeting", "&model=" + base64url(std::string(R"({"a":")") + std::string(model) + "\"}"));
    };
    running.write("greeting.model.json", R"({"a":"own"})");
    running.write("model.json", R"({"a":"shared"})");
    EXPECT_EQ(drawn("greeting", ""), greeting("own"));
    running.write("other.json", RunningService::greetingText);
    EXPECT_EQ(drawn("other", ""), greeting("shared"));
    running.write("greeting.model.json", R"({"a":"changed"})");
    EXPECT_EQ(drawn("greeting", ""), greeting("changed"));

    running.write("small.json", R"({"a":"small"})");
    running.write("other.widget.toml",
                  "families = [\"systemSmall\"]\nappearance = \"dark\"\n[models]\nsystemSmall = \"small.json\"\n");
    const std::string small = "&family=systemSmall&model=" + base64url(R"({"a":"small"})");
    EXPECT_EQ(drawn("other", ""), drawn("greeting", "&appearance=dark" + small));
    EXPECT_EQ(drawn("other", "&appearance=light"), drawn("greeting", small)) << "what is asked for wins";
    EXPECT_EQ(drawn("other", "&appearance=light&family=systemMedium"), greeting("shared"));

    EXPECT_EQ(drawn("other", "&size=338x158&appearance=light"),
              drawn("greeting", "&size=338x158&model=" + base64url(R"({"a":"shared"})")))
        << "a size stands instead of the families";

    std::filesystem::create_directory(running.folder / "inside");
    running.write("inside/document.json", RunningService::greetingText);
    running.write("inside/model.json", R"({"a":"inside"})");
    EXPECT_EQ(drawn("inside", ""), greeting("inside"));

    for (const char* const name : {"model", "greeting.model", "other.widget", "inside/document"})
        EXPECT_EQ(running.get("/v1/widgets/" + std::string(name) + ".png").status, 404) << name;
    running.write("other.widget.toml", "[models]\nsystemMedium = \"gone.json\"\n");
    EXPECT_EQ(running.get("/v1/widgets/other.png").status, 422) << "its settings name what is not there";
    running.write("other.widget.toml", "familes = 1\n");
    const ClientAnswer wrong = running.get("/v1/widgets/other.png");
    EXPECT_EQ(wrong.status, 422);
    EXPECT_EQ(member(wrong, "line"), "1");
    EXPECT_THAT(member(wrong, "message"), HasSubstr("other.widget.toml: "));

    std::filesystem::create_directory(running.folder / "other.models");
    for (int i = 0; i <= 2000; ++i) running.write("other.models/" + std::to_string(i) + ".json", "{}");
    const ClientAnswer tooMany = running.get("/v1/widgets/other.png");
    EXPECT_EQ(tooMany.status, 422);
    EXPECT_EQ(member(tooMany, "message"), "the models of 'other' cannot be listed, or are too many");
}

TEST(PictureService, LetsTheServersOwnOptionsGoBeforeSettings) {
    const RunningService running([](ServeSettings& settings) { settings.said = {OptionName::appearance}; });
    running.write("greeting.widget.toml", "appearance = \"dark\"\nfamilies = [\"systemSmall\"]\n");
    const std::string target = "/v1/widgets/greeting.png?" + dated + "&model=" + base64url(R"({"a":"words"})");
    const std::string tag = running.get(target).header("etag");
    EXPECT_EQ(tag, running.get(target + "&appearance=light&family=systemSmall").header("etag"));
    EXPECT_NE(tag, running.get(target + "&appearance=dark").header("etag"));
}

TEST(PictureService, HasNoWidgetsWithoutAFolder) {
    const RunningService running([](ServeSettings& settings) { settings.folder = std::nullopt; });
    EXPECT_EQ(running.get("/v1/widgets/color.png").status, 404);
    EXPECT_EQ(running.post("/v1/render", R"({"document": )" + std::string(RunningService::colorText) + "}").status,
              200);
}

TEST(PictureService, WantsSignaturesWhereThereAreKeys) {
    const std::filesystem::path keys = std::filesystem::temp_directory_path() / "tavrin-serve-keys";
    std::ofstream(keys) << "secret\n";
    const auto signing = [&](bool opensPost) {
        return [&keys, opensPost](ServeSettings& settings) {
            settings.keyFile = keys.string();
            settings.opensPost = opensPost;
        };
    };
    const std::string posted = R"({"document": )" + std::string(RunningService::colorText) + "}";
    const SigningKeys key("secret\n", "keys");
    {
        const RunningService running(signing(false));
        const std::string address = key.sign("/v1/widgets/color.png?scale=1");
        EXPECT_EQ(running.get("/v1/widgets/color.png").status, 403);
        EXPECT_EQ(running.get(address + "a").status, 403);
        EXPECT_EQ(running.get(key.sign("/v1/widgets/color.png", 1)).status, 403) << "it has expired";
        EXPECT_EQ(running.post("/v1/render", posted).status, 403);
        EXPECT_EQ(running.post("/v1/check", posted).status, 403);
        EXPECT_EQ(running.metric(drawnTotal), 0) << "nothing was drawn";
        EXPECT_EQ(running.get(address).status, 200);
        EXPECT_EQ(running.get("/healthz").status, 200);
    }
    const RunningService open(signing(true));
    EXPECT_EQ(open.post("/v1/render", posted).status, 200);
    EXPECT_EQ(open.get("/v1/widgets/color.png").status, 403);
    std::filesystem::remove(keys);
}

TEST(PictureService, LetsPagesOfAnOriginRead) {
    const RunningService closed;
    EXPECT_EQ(closed.get("/healthz").header("access-control-allow-origin"), "");
    EXPECT_EQ(closed.ask("OPTIONS", "/v1/render").status, 405);
    const RunningService running([](ServeSettings& settings) { settings.corsOrigin = "https://example.com"; });
    const ClientAnswer preflight = running.ask("OPTIONS", "/v1/render");
    EXPECT_EQ(preflight.status, 204);
    EXPECT_EQ(preflight.header("access-control-allow-methods"), "POST");
    for (const ClientAnswer& answer : {preflight, running.get("/v1/widgets/color.png"), running.get("/nothing")}) {
        EXPECT_EQ(answer.header("access-control-allow-origin"), "https://example.com");
        EXPECT_EQ(answer.header("vary"), "Origin");
    }
}

TEST(PictureService, WaitsForPicturesHalfOfTheTime) {
    const WebServer web;
    const RunningService running([](ServeSettings& settings) {
        settings.drawing.widget.fetchPolicy = FetchPolicy::all;
        settings.timeLimit = 1;
    });
    const auto documentOf = [&](const std::string& path) {
        return R"({"version":"1.0","nodes":{"main":{"type":"webImage","url":")" + web.at(path) + R"("}}})";
    };
    running.write("late.json", documentOf("/late/3000/serve"));
    running.write("known.json", documentOf("/ok/serve"));
    const auto begin = std::chrono::steady_clock::now();
    const ClientAnswer late = running.get("/v1/widgets/late.png");
    EXPECT_EQ(late.status, 200) << late.body;
    EXPECT_EQ(late.header("cache-control"), "no-store");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(950));
    EXPECT_EQ(running.get("/v1/widgets/late.png").status, 200);
    EXPECT_EQ(running.metric(drawnTotal), 2) << "what lacks something is not kept";
    EXPECT_EQ(running.get("/v1/widgets/known.png").header("cache-control"), "no-cache");
}

/// A server in which one picture at a time is drawn, and the address of one that takes two seconds.
class SlowPictureService : public ::testing::Test {
protected:
    SlowPictureService()
        : running([](ServeSettings& settings) {
              settings.drawing.widget.fetchPolicy = FetchPolicy::all;
              settings.workers = 1;
              settings.queue = 1;
          }) {
        running.write("slow.json", R"({"version":"1.0","nodes":{"main":{"type":"webImage","url":")" +
                                       web.at("/late/5000/slow") + R"("}}})");
    }
    [[nodiscard]] ClientConnection begin(const std::string& target) const {
        ClientConnection client = running.connection();
        client.send(RunningService::request("GET", target));
        return client;
    }
    [[nodiscard]] bool becomes(const std::string& metric, double value) const {
        return turnsTrue([&] { return running.metric(metric) == value; });
    }

    WebServer web;
    RunningService running;
};

TEST_F(SlowPictureService, RefusesWhatItHasNoPlaceFor) {
    ClientConnection drawing = begin("/v1/widgets/slow.png");
    ASSERT_TRUE(becomes("tavrin_drawings_running", 1));
    ClientConnection same = begin("/v1/widgets/slow.png");
    ClientConnection waiting = begin("/v1/widgets/color.png");
    ASSERT_TRUE(becomes("tavrin_queue_length", 1));
    const ClientAnswer refused = running.get("/v1/widgets/greeting.png");
    EXPECT_EQ(refused.status, 429);
    EXPECT_EQ(refused.header("retry-after"), "1");
    EXPECT_EQ(running.post("/v1/check", R"({"document": {}})").status, 429);
    EXPECT_EQ(running.get("/readyz").status, 200);
    EXPECT_EQ(running.get("/v1/schema").status, 200);
    EXPECT_EQ(drawing.receive().status, 200);
    EXPECT_EQ(same.receive().status, 200);
    EXPECT_EQ(waiting.receive().status, 200);
    EXPECT_EQ(running.metric(drawnTotal), 2) << "the same was drawn once";
}

TEST_F(SlowPictureService, GivesUpWhatNobodyWaitsFor) {
    const auto begun = std::chrono::steady_clock::now();
    {
        const ClientConnection gone = begin("/v1/widgets/slow.png");
        ASSERT_TRUE(becomes("tavrin_drawings_running", 1));
    }
    EXPECT_EQ(running.get("/v1/widgets/color.png").status, 200);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(1800));
    EXPECT_EQ(running.metric(drawnTotal), 1);
    EXPECT_TRUE(turnsTrue([&] {
        const auto records = running.records();
        return std::ranges::any_of(records, [](const HTTPRecord& record) { return record.status == 499; });
    }));
}

TEST(PictureService, KeepsToTheTimeLimit) {
    const RunningService hasty([](ServeSettings& settings) { settings.timeLimit = 1e-6; });
    EXPECT_EQ(hasty.get("/v1/widgets/color.png").status, 504);
    EXPECT_EQ(hasty.post("/v1/check", R"({"document": {}})").status, 504);
    EXPECT_EQ(hasty.metric(drawnTotal), 0);
    const RunningService running([](ServeSettings& settings) {
        settings.timeLimit = 0.05;
        settings.drawing.widget.budget = RenderBudget::usual();
    });
    const ClientAnswer large = running.get("/v1/widgets/color.png?size=2000x2000&scale=5&compression=small");
    EXPECT_EQ(large.status, 504) << large.body;
    EXPECT_EQ(member(large, "type"), "ServerError");
}

TEST(PictureService, TakesOtherSettings) {
    RunningService running;
    const ClientAnswer light = running.get("/v1/widgets/greeting.png?" + dated + "&model=" + base64url(R"({"a":"A"})"));
    ServeSettings dark = running.settings;
    dark.drawing.widget.appearance = Appearance::dark;
    running.service->reload(dark);
    const ClientAnswer other = running.get("/v1/widgets/greeting.png?" + dated + "&model=" + base64url(R"({"a":"A"})"));
    EXPECT_EQ(other.status, 200);
    EXPECT_NE(other.body, light.body) << "nothing of earlier settings is found";
    dark.folder = "/nowhere/at/all";
    EXPECT_ANY_THROW(running.service->reload(dark));
    EXPECT_EQ(running.get("/v1/widgets/color.png").status, 200) << "all stays as it was";
}

}  // namespace
}  // namespace tavrin::cli
