// SPDX-License-Identifier: MIT
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/strings/base64.h"
#include "tests/cli/program.h"

// `tavrin render --jsonl`: a line asks for a picture, a line answers.

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

std::vector<std::string> streamWords(const std::vector<std::string>& more = {}) {
    return joined({"render", "--jsonl", "--date", "2026-03-01T09:41:00Z", "--scale", "1"}, more);
}

/// The answer to one line, without what surrounds it.
std::string answerTo(const Workplace& place, const std::string& line, int status = 0,
                     const std::vector<std::string>& more = {}) {
    const Finished finished = place.run(streamWords(more), line + "\n");
    EXPECT_EQ(finished.status, status) << finished.err;
    EXPECT_EQ(finished.err, "");
    EXPECT_TRUE(finished.out.ends_with('\n'));
    const std::vector<std::string> lines = linesOf(finished.out);
    return lines.size() == 1 ? lines.front() : "not one line: " + finished.out;
}

std::string asString(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) result += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    return result + "\"";
}

TEST(Stream, AnswersALineWithALine) {
    const Workplace place;
    place.write("w.json", greeting);
    const std::string document(greeting);
    const struct {
        const char* why;
        std::string line;
        std::vector<std::string> words;
        const char* answer;
    } rows[] = {
        {"a document as a value",
         R"({"document": )" + document + R"(, "model": {"a": "x"}, "output": "o.png"})",
         {},
         R"({"line":1,"output":"o.png","width":338,"height":158,"validUntil":null,"notes":[]})"},
        {"a document as a text",
         R"({"output": "o.png", "model": "{\"a\": 1}", "document": )" + asString(document) + "}",
         {},
         R"({"line":1,"output":"o.png","width":338,"height":158,"validUntil":null,"notes":[]})"},
        {"a document's name",
         R"({"name": "w.json", "model": {"a": 1}, "output": "o.png"})",
         {},
         R"({"line":1,"output":"o.png","width":338,"height":158,"validUntil":null,"notes":[]})"},
        {"options",
         R"({"name": "w.json", "model": {"a": 1}, "output": "o.jpg", "options": {"size": [20, 10], "scale": 2}})",
         {},
         R"({"line":1,"output":"o.jpg","width":40,"height":20,"validUntil":null,"notes":[]})"},
        {"the size of a drawing in points",
         R"({"name": "w.json", "model": {"a": 1}, "output": "o.svg", "options": {"size": "20.5x10", "scale": 2}})",
         {},
         R"({"line":1,"output":"o.svg","width":20.5,"height":10,"validUntil":null,"notes":[]})"},
        {"options of the command line",
         R"({"name": "w.json", "model": {"a": 1}, "output": "o"})",
         {"--family", "systemSmall", "--format", "webp"},
         R"({"line":1,"output":"o","width":158,"height":158,"validUntil":null,"notes":[]})"},
        {"which a line may change",
         R"({"name": "w.json", "model": {"a": 1}, "output": "o", "options": {"size": "7x7"}})",
         {"--family", "systemSmall", "--format", "webp"},
         R"({"line":1,"output":"o","width":7,"height":7,"validUntil":null,"notes":[]})"},
        {"the suffix says more than the command line",
         R"({"name": "w.json", "model": {"a": 1}, "output": "o.pdf"})",
         {"--format", "webp"},
         R"({"line":1,"output":"o.pdf","width":338,"height":158,"validUntil":null,"notes":[]})"},
        {"what is null is not there",
         R"({"name": "w.json", "model": {"a": 1}, "document": null, "options": null, "output": "o.png"})",
         {},
         R"({"line":1,"output":"o.png","width":338,"height":158,"validUntil":null,"notes":[]})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(answerTo(place, row.line, 0, row.words), row.answer);
    }
}

TEST(Stream, DrawsAsEveryVerb) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("m.json", R"({"a": "x"})");
    const std::vector<std::string> alone{"--model", "m.json", "--date", "2026-03-01T09:41:00Z", "--scale", "1"};
    for (const char* format : {"png", "svg", "pdf", "webp", "jpeg"}) {
        SCOPED_TRACE(format);
        const std::string file = std::string("one.") + format;
        ASSERT_EQ(place.run(joined({"render", "w.json", "-o", file}, alone)).status, 0);
        const std::string line = R"({"name": "w.json", "model": {"a": "x"}, "options": {"hashes": true, "format": ")" +
                                 std::string(format) + "\"}}";
        const JSON answer = JSON::parse(answerTo(place, line));
        EXPECT_TRUE(answer.find("picture")->description() == base64(place.read(file)));
        EXPECT_EQ(answer.find("sha256")->description().size(), 64U);
    }
}

TEST(Stream, SaysWhenAPictureIsOver) {
    const Workplace place;
    const std::string line =
        R"({"output": "o.png", "document": {"version": "1.1", "nodes": {"main": {"type": "timer", "timestamp": 1772358144}}}})";
    const JSON answer = JSON::parse(answerTo(place, line));
    EXPECT_EQ(answer.find("validUntil")->description(), "2026-03-01T09:41:01Z");
}

TEST(Stream, ToldFailuresLeaveTheOtherLines) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("broken.json", broken);
    const struct {
        const char* why;
        std::string line;
        const char* error;
    } rows[] = {
        {"no JSON", R"({"name": "w.json",})", R"("type":"DecodingError","kind":"dataCorrupted")"},
        {"its place", R"({"name": "w.json",})", R"("line":2,"column":19})"},
        {"no object", "[1]",
         R"("type":"UsageError","message":"a line is an object with document, name, model, options or )"},
        {"nothing", "{}", "which document?"},
        {"two documents", R"({"name": "w.json", "document": {}})", "a document or a name, not both"},
        {"an unknown member", R"({"nmae": "w.json"})", "a line has no 'nmae'; did you mean 'name'?"},
        {"no file", R"({"name": "gone.json"})", R"("type":"IOError","message":"cannot read 'gone.json': No such file)"},
        {"a name that is none", R"({"name": 3})", "name takes the name of a file, not"},
        {"the stream itself", R"({"name": "-"})", "name takes the name of a file, not '-'"},
        {"a document at fault", R"({"name": "broken.json"})", R"("line":4,"column":)"},
        {"a document's member", R"({"document": {"version": "1.0", "nodes": {"main": {"type": "text"}}}})",
         R"("type":"DecodingError","kind":"keyNotFound","path":["nodes","main"],"key":"content")"},
        {"its place in the document", R"({"document": {"version": "1.0", "nodes": {"main": {"type": "text"}}}})",
         R"("role":"document","line":1,"column":38)"},
        {"a model at fault", R"({"name": "w.json", "model": "{"})", R"("role":"model","line":1)"},
        {"a model that lacks a value", R"({"name": "w.json", "model": {}})", R"("type":"ModelContextError")"},
        {"an unknown option", R"({"name": "w.json", "options": {"famly": "systemSmall"}})",
         R"("type":"UsageError","message":"there is no option 'famly'; did you mean 'family'?")"},
        {"options that are none", R"({"name": "w.json", "options": 1})", "options takes an object of options"},
        {"no format", R"({"name": "w.json", "output": "o.gif"})", "output takes a name that ends in .png"},
        {"two formats", R"({"name": "w.json", "output": "o.png", "options": {"format": "svg"}})",
         "the format svg contradicts the suffix of 'o.png'"},
        {"no folder", R"({"name": "w.json", "model": {"a": 1}, "output": "none/o.png"})", "cannot write 'none/o.png'"},
        {"an output that is none", R"({"name": "w.json", "output": ""})", "output takes the name of a file, not ''"},
        {"its own document", R"({"name": "w.json", "output": "w.json", "options": {"format": "png"}})",
         "'w.json' would be written over the document"},
        {"a budget that is spent", R"({"name": "w.json", "model": {"a": 1}, "options": {"budget": {"pixels": 5}}})",
         R"("kind":"Budget")"},
    };
    const std::string good = R"({"name": "w.json", "model": {"a": 1}, "options": {"size": "5x5"}, "output": "ok.png"})";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(streamWords(), good + "\n" + row.line + "\n\n" + good);
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(finished.err, "");
        const std::vector<std::string> lines = linesOf(finished.out);
        ASSERT_EQ(lines.size(), 3U) << finished.out;
        EXPECT_THAT(lines[0], HasSubstr(R"({"line":1,"output":"ok.png")"));
        EXPECT_THAT(lines[1], HasSubstr(R"({"line":2,"error":{"type":)"));
        EXPECT_THAT(lines[1], HasSubstr(row.error));
        EXPECT_THAT(lines[2], HasSubstr(R"({"line":4,"output":"ok.png")"));
        EXPECT_FALSE(place.has("o.png"));
    }
}

TEST(Stream, TakesWhatLiesBesideANamedDocument) {
    const struct {
        const char* why;
        std::vector<PlacedFile> files;
        std::string line;
        std::vector<std::string> words;
        std::vector<std::string> alone;  // how the same is asked for by itself
    } rows[] = {
        {"a model", {{"w.model.json", R"({"a": "x"})"}}, R"("name": "w.json")", {}, {}},
        {"no model beside, but in the line",
         {{"w.model.json", R"({"a": "x"})"}},
         R"("name": "w.json", "model": {"a": "other"})",
         {},
         {"--model", "other.json"}},
        {"a family's model",
         {{"w.model.json", R"({"a": "x"})"}, {"w.widget.toml", "models = {systemSmall = \"other.json\"}"}},
         R"("name": "w.json", "options": {"family": "systemSmall"})",
         {},
         {"--family", "systemSmall", "--model", "other.json"}},
        {"settings",
         {{"model.json", R"({"a": "x"})"},
          {"widget.toml",
           "families = [\"systemSmall\"]\nscreens = [\"430x932\"]\nappearance = \"dark\"\n"
           "background = \"none\""}},
         R"("name": "w.json")",
         {},
         {"--family", "systemSmall", "--screen", "430x932", "--appearance", "dark", "--background", "none"}},
        {"options of the command line before settings",
         {{"model.json", R"({"a": "x"})"}, {"widget.toml", "families = [\"systemSmall\"]\nappearance = \"dark\""}},
         R"("name": "w.json")",
         {"--family", "systemLarge"},
         {"--family", "systemLarge", "--appearance", "dark"}},
        {"options of the line before both",
         {{"model.json", R"({"a": "x"})"}, {"widget.toml", "families = [\"systemSmall\"]\nappearance = \"dark\""}},
         R"("name": "w.json", "options": {"size": "99x55", "appearance": "light"})",
         {},
         {"--size", "99x55", "--appearance", "light"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("w.json", greeting);
        place.write("other.json", R"({"a": "other"})");
        place.write(row.files);
        EXPECT_THAT(answerTo(place, "{" + row.line + R"(, "output": "o.png"})", 0, row.words),
                    HasSubstr(R"("output":"o.png")"));
        const std::vector<std::string> alone{"render",  "w.json", "-o",     "one.png",
                                             "--scale", "1",      "--date", "2026-03-01T09:41:00Z"};
        ASSERT_EQ(place.run(joined(alone, row.alone)).status, 0);
        EXPECT_TRUE(place.read("o.png") == place.read("one.png"));
    }
}

TEST(Stream, PairsNothingWithADocumentInTheLine) {
    const Workplace place;
    place.write("document.model.json", R"({"a": "x"})");
    place.write("model.json", R"({"a": "x"})");
    place.write("widget.toml", "families = [\"systemSmall\"]");
    EXPECT_EQ(answerTo(place, R"({"output": "o.png", "document": )" + std::string(hello) + "}"),
              R"({"line":1,"output":"o.png","width":338,"height":158,"validUntil":null,"notes":[]})");
}

TEST(Stream, LooksForPicturesBesideADocumentUnlessTheyAreFetched) {
    const Workplace place;
    place.write("w.json", R"({"version": "1.0", "nodes": {"main": )"
                          R"({"type": "webImage", "url": "http://127.0.0.1:9/none.png"}}})");
    place.write("pictures/other", "");
    const auto noteOf = [&](const std::string& more, const std::vector<std::string>& words = {}) {
        return answerTo(place, R"({"name": "w.json", "output": "o.png")" + more + "}", 1,
                        joined({"--fail-on-missing"}, words));
    };
    EXPECT_THAT(noteOf(""), HasSubstr("from the file"));
    EXPECT_THAT(noteOf(R"(, "options": {"fetch": "none"})"), HasSubstr("from the file"));
    EXPECT_THAT(noteOf(R"(, "options": {"fetch": "all"})"), HasSubstr("127.0.0.1"));
    EXPECT_THAT(noteOf("", {"--fetch", "all"}), HasSubstr("127.0.0.1"));
}

TEST(Stream, SaysWhatIsWrongBesideADocument) {
    const Workplace place;
    place.write("w.json", greeting);
    EXPECT_THAT(answerTo(place, R"({"name": "w.json", "output": "o.png"})"), HasSubstr("but no model"));
    place.write("w.widget.toml", "families = [\"systemSmall\"]\nfamilys = []");
    EXPECT_EQ(
        answerTo(place, R"({"name": "w.json", "output": "o.png"})", 1),
        R"({"line":1,"error":{"type":"SettingsError",)"
        R"("message":"w.widget.toml: settings have no 'familys'; did you mean 'families'?","line":2,"column":1}})");
    place.write("w.widget.toml", "models = {systemMedium = \"gone.json\"}");
    EXPECT_THAT(answerTo(place, R"({"name": "w.json", "output": "o.png"})", 1),
                HasSubstr(R"("type":"IOError","message":"cannot read 'gone.json': No such file)"));
    place.write("w.widget.toml", "background = \"none\"");
    for (const char* const file : {"w.widget.toml", "w.model.json", "w.models/other.json"})
        for (const char* const model : {"", R"(, "model": {"a": "mine"})"}) {
            place.write("w.model.json", R"({"a": "x"})");
            place.write("w.models/other.json", R"({"a": "x"})");
            EXPECT_THAT(answerTo(place,
                                 R"({"name": "w.json", "options": {"format": "png"}, "output": ")" + std::string(file) +
                                     "\"" + model + "}",
                                 1),
                        HasSubstr("would be written over "))
                << file << model;
        }
}

TEST(Stream, FailsForMissingPicturesWhereThatIsAsked) {
    const Workplace place;
    const std::string line = R"({"output": "o.png", "document": {"version": "1.0", "nodes": {"main": )"
                             R"({"type": "webImage", "url": "https://a.test/b.png"}}}})";
    EXPECT_THAT(answerTo(place, line, 0, {"--offline"}), HasSubstr(R"("output":"o.png")"));
    EXPECT_EQ(answerTo(place, line, 1, {"--offline", "--fail-on-missing"}),
              R"({"line":1,"error":{"type":"TavrinError","kind":"MissingPicture",)"
              R"("message":"no picture could be had from 'https://a.test/b.png'"}})");
}

TEST(Stream, AnswersInOrder) {
    const Workplace place;
    place.write("w.json", greeting);
    std::string lines;
    for (int i = 1; i <= 100; ++i)
        lines += i % 10 == 0 ? "{}\n"
                             : R"({"name": "w.json", "model": {"a": )" + std::to_string(i) +
                                   R"(}, "options": {"size": "50x20", "hashes": true}, "output": "o.png"})" + "\n";
    const Finished finished = place.run(streamWords(), lines);
    EXPECT_EQ(finished.status, 1);
    const std::vector<std::string> answers = linesOf(finished.out);
    ASSERT_EQ(answers.size(), 100U);
    for (std::size_t i = 0; i < 100; ++i)
        EXPECT_THAT(answers[i], ::testing::StartsWith(R"({"line":)" + std::to_string(i + 1) + ","));
    // The last one of a name is what stands there.
    place.write("m.json", R"({"a": 99})");
    ASSERT_EQ(
        place.run({"render", "w.json", "--model", "m.json", "--size", "50x20", "--scale", "1", "-o", "one.png"}).status,
        0);
    EXPECT_TRUE(place.read("o.png") == place.read("one.png"));
}

/// A program that is asked line by line, each after the answer to the one before.
class AskedProgram {
public:
    explicit AskedProgram(const Workplace& place) {
        int in[2];
        int out[2];
        EXPECT_EQ(::pipe2(in, O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
        process_ = place.start(streamWords(), in[0], out[1]);
        ::close(in[0]);
        ::close(out[1]);
        question_ = in[1];
        answer_ = out[0];
    }
    AskedProgram(const AskedProgram&) = delete;
    AskedProgram& operator=(const AskedProgram&) = delete;
    ~AskedProgram() { ::close(answer_); }

    std::string ask(const std::string& line) const {
        const std::string text = line + "\n";
        EXPECT_EQ(::write(question_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        std::string answer;
        for (char c = 0; ::read(answer_, &c, 1) == 1 && c != '\n';) answer += c;
        return answer;
    }

    int end() const {
        ::close(question_);
        return waitFor(process_);
    }

private:
    pid_t process_ = 0;
    int question_ = -1;
    int answer_ = -1;
};

TEST(Stream, AnswersBeforeTheNextLine) {
    const Workplace place;
    const AskedProgram program(place);
    const std::string line = R"({"name": "w.json", "options": {"size": "50x20", "hashes": true}, "output": "o.png"})";
    place.write("w.json", hello);
    const std::string first = program.ask(line);
    const std::string bytes = place.read("o.png");
    EXPECT_THAT(first, HasSubstr(R"("sha256")"));
    // A document that is changed is read again; one that comes to be at fault, or is gone, fails.
    const std::string other = R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "Other, longer"}}})";
    place.write("w.json", other);
    EXPECT_NE(program.ask(line).substr(first.find(',')), first.substr(first.find(',')));
    EXPECT_FALSE(place.read("o.png") == bytes);
    place.write("w.json", broken);
    EXPECT_THAT(program.ask(line), HasSubstr(R"("error":{"type":"DecodingError")"));
    EXPECT_THAT(program.ask(line), HasSubstr(R"("line":4)")) << "and is told again";
    place.write("w.json", hello);
    EXPECT_EQ(program.ask(line).substr(first.find(',')), first.substr(first.find(',')));
    EXPECT_TRUE(place.read("o.png") == bytes);
    EXPECT_EQ(program.end(), 1);
}

TEST(Stream, LooksAgainWhereSomethingBesideADocumentIsChanged) {
    const Workplace place;
    place.write("w.json", greeting);
    const AskedProgram program(place);
    const std::string line = R"({"name": "w.json", "options": {"hashes": true}, "output": "o.png"})";
    const auto digest = [&] {
        const std::string answer = program.ask(line);
        const std::size_t begin = answer.find("\"width\"");
        return begin == std::string::npos ? answer : answer.substr(begin);
    };
    const std::string without = digest();
    EXPECT_EQ(digest(), without);
    place.write("model.json", R"({"a": "x"})");
    const std::string shared = digest();
    EXPECT_NE(shared, without);
    place.write("w.model.json", R"({"a": "own"})");
    const std::string own = digest();
    EXPECT_NE(own, shared);
    place.write("w.widget.toml", R"(families = ["systemSmall"])");
    const std::string small = digest();
    EXPECT_THAT(small, HasSubstr("\"width\":158"));
    place.write("w.widget.toml", "families = [\"systemLarge\"] ");
    EXPECT_THAT(digest(), HasSubstr("\"height\":354"));
    std::filesystem::remove(place.path("w.widget.toml"));
    EXPECT_EQ(digest(), own);
    std::filesystem::remove(place.path("w.model.json"));
    EXPECT_EQ(digest(), shared);
    place.write("model.json", R"({"a": "longer"})");
    EXPECT_NE(digest(), shared);
    std::filesystem::remove(place.path("model.json"));
    EXPECT_EQ(digest(), without);
    EXPECT_EQ(program.end(), 0);
}

TEST(Stream, IsRefused) {
    const Workplace place;
    place.write("w.json", hello);
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {"with a document", {"w.json"}, "takes no document"},
        {"with a model", {"--model", "m.json"}, "--model does not go with --jsonl"},
        {"with an output", {"-o", "o.png"}, "--output does not go with --jsonl"},
        {"with many families", {"--families", "all"}, "--families does not go with --jsonl"},
        {"with frames", {"--frames", "a..b"}, "--frames does not go with --jsonl"},
        {"with an animation", {"--format", "apng"}, "--format takes png, svg, pdf, webp or jpeg, not 'apng'"},
        {"with a wrong option", {"--scale", "0"}, "--scale takes"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined({"render", "--jsonl"}, row.words), "{}\n");
        EXPECT_EQ(finished.status, 2);
        EXPECT_EQ(finished.out, "");
        EXPECT_THAT(finished.err, HasSubstr(row.message));
    }
}

}  // namespace
}  // namespace tavrin::cli
