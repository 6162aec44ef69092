// SPDX-License-Identifier: MIT
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tests/cli/program.h"

// Models that are lines of a file.

namespace tavrin::cli {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::vector<std::string> lineWords(const std::vector<std::string>& more = {}) {
    return joined({"render", "w.json", "--models", "people.jsonl", "-o", "out", "--scale", "1"}, more);
}

std::vector<std::string> pictures(const Workplace& place) {
    std::vector<std::string> names = place.files();
    std::erase_if(names, [](const std::string& name) { return !name.starts_with("out/"); });
    return names;
}

TEST(Lines, NameTheirPictures) {
    const std::string longest(251, 'x');
    const struct {
        const char* why;
        std::string lines;
        std::vector<std::string> options;
        std::vector<std::string> files;
    } rows[] = {
        {"by a string", R"({"id": "ann", "a": 1})", {"--key", "id"}, {"out/ann.png", "out/index.json"}},
        {"by a member further in", R"({"p": {"id": "ann"}})", {"--key", "p.id"}, {"out/ann.png", "out/index.json"}},
        {"by a number", R"({"id": 17})", {"--key", "id"}, {"out/17.png", "out/index.json"}},
        {"by one that is no whole one", R"({"id": -1.5})", {"--key", "id"}, {"out/-1.5.png", "out/index.json"}},
        {"by a large one",
         R"({"id": 18446744073709551615})",
         {"--key", "id"},
         {"out/18446744073709551615.png", "out/index.json"}},
        {"by the first of two", R"({"id": "a", "id": "b"})", {"--key", "id"}, {"out/a.png", "out/index.json"}},
        {"with dots", R"({"id": "a..b"})", {"--key", "id"}, {"out/a..b.png", "out/index.json"}},
        {"in another script", R"({"id": "Zoë"})", {"--key", "id"}, {"out/Zoë.png", "out/index.json"}},
        {"as long as may be",
         R"({"id": ")" + longest + "\"}",
         {"--key", "id"},
         {"out/index.json", "out/" + longest + ".png"}},
        {"by their number", "{}\n{}", {}, {"out/1.png", "out/2.png", "out/index.json"}},
        {"which counts blank ones", "\n{}\r\n \t\n{}\n\n", {}, {"out/2.png", "out/4.png", "out/index.json"}},
        {"with what else tells them apart",
         R"({"id": "ann"})",
         {"--key", "id", "--appearances", "all"},
         {"out/index.json", "out/w/systemMedium-dark@1x-ann.png", "out/w/systemMedium-light@1x-ann.png"}},
        {"of no lines", "", {}, {"out/index.json"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("w.json", hello);
        place.write("people.jsonl", row.lines);
        const Finished finished = place.run(lineWords(row.options));
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.err, "");
        EXPECT_EQ(pictures(place), row.files);
    }
}

TEST(Lines, AreDrawnAsModelsAre) {
    const Workplace place;
    place.write("w.json", greeting);
    std::string lines;
    for (int i = 1; i <= 100; ++i)
        lines += R"({"id": "p)" + std::to_string(i) + R"(", "a": )" + std::to_string(i) + "}\n";
    place.write("people.jsonl", lines);
    ASSERT_EQ(place.run(lineWords({"--key", "id"})).status, 0);
    for (const int i : {1, 16, 17, 100}) {
        SCOPED_TRACE(i);
        place.write("m.json", R"({"a": )" + std::to_string(i) + "}");
        ASSERT_EQ(place.run({"render", "w.json", "--model", "m.json", "--scale", "1", "-o", "one.png"}).status, 0);
        EXPECT_TRUE(place.read("out/p" + std::to_string(i) + ".png") == place.read("one.png"));
    }
    const JSON index = JSON::parse(place.read("out/index.json"));
    for (std::int64_t i = 0; i < 100; ++i) {
        const JSON* const picture = index.find(i);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->find("file")->description(), "p" + std::to_string(i + 1) + ".png") << "in their order";
        EXPECT_EQ(picture->find("model")->description(), "people.jsonl:" + std::to_string(i + 1));
        EXPECT_EQ(picture->find("sha256")->description(), "null");
    }
    EXPECT_EQ(index.find(std::int64_t{100}), nullptr);
}

TEST(Lines, AtFaultLeaveTheOthers) {
    const std::string tooLong(252, 'x');
    const struct {
        const char* why;
        std::string line;
        std::string message;
        const char* kind;
    } rows[] = {
        {"no JSON", R"({"id": "b",})", "people.jsonl:2:12: error: The given data was not valid JSON", "dataCorrupted"},
        {"two values", R"({"id": "b"} {})", "people.jsonl:2:13: error: The given data was not valid JSON",
         "dataCorrupted"},
        {"no key", R"({"a": 1})", "people.jsonl:2:1: error: the key \"id\", for the picture's name, is missing",
         "keyNotFound"},
        {"no object", "[1]", "people.jsonl:2:1: error: expected an object with the key \"id\"", "typeMismatch"},
        {"a key of another kind", R"({"id": true})", "people.jsonl:2:8: error: expected a string or a number",
         "typeMismatch"},
        {"null", R"({"id": null})", "people.jsonl:2:8: error: expected a string or a number", "typeMismatch"},
        {"a folder", R"({"id": "x/y"})", "people.jsonl:2:8: error: this cannot name a picture's file: it has a \"/\"",
         "dataCorrupted"},
        {"a way out", R"({"id": "../x"})", "people.jsonl:2:8: error: this cannot name a picture's file: it has a \"/\"",
         "dataCorrupted"},
        {"the folder above", R"({"id": ".."})", "people.jsonl:2:8: error: this cannot name a picture's file: \"..\" is",
         "dataCorrupted"},
        {"nothing", R"({"id": ""})", "people.jsonl:2:8: error: this cannot name a picture's file: it is empty",
         "dataCorrupted"},
        {"a zero byte", R"({"id": "x\u0000"})",
         "people.jsonl:2:8: error: this cannot name a picture's file: it has a control", "dataCorrupted"},
        {"too much", R"({"id": ")" + tooLong + "\"}",
         "people.jsonl:2:8: error: this cannot name a picture's file: it has 252 bytes; at most 251 fit",
         "dataCorrupted"},
        {"an earlier line's name", R"({"x": 0, "id": "a"})",
         "people.jsonl:2:16: error: an earlier line's picture is called \"a\", too", "dataCorrupted"},
        {"a very long line", std::string((std::size_t{16} << 20) + 1, ' '),
         "people.jsonl:2:1: error: the line is longer than 16777216 bytes", "dataCorrupted"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("w.json", hello);
        place.write("people.jsonl", "{\"id\": \"a\"}\n" + row.line + "\n{\"id\": \"c\"}\n");
        const Finished finished = place.run(lineWords({"--key", "id"}));
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err, StartsWith(row.message));
        EXPECT_THAT(pictures(place), ElementsAre("out/a.png", "out/c.png", "out/index.json"));
        const JSON index = JSON::parse(place.read("out/index.json"));
        EXPECT_THAT(index.find(std::int64_t{1})->find("error")->description(), StartsWith(row.message));
        const Finished told = place.run(lineWords({"--key", "id", "--errors", "json"}));
        EXPECT_EQ(errorText(told, "kind"), row.kind);
        EXPECT_EQ(errorText(told, "file"), "people.jsonl");
        EXPECT_EQ(errorMember(told, "line").description(), "2");
    }
}

TEST(Lines, TellWhichOneADocumentFailsWith) {
    const Workplace place;
    place.write("w.json",
                R"({"version": "1.0", "nodes": {"main": {"type": "color", "value": "{{initServerParam.a}}"}}})");
    place.write("people.jsonl", "{\"a\": \"#102030\"}\n{\"a\": \"none\"}\n");
    const Finished finished = place.run(lineWords());
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, AllOf(StartsWith("w.json:1:"), HasSubstr(", with the model people.jsonl:2\n")));
    EXPECT_THAT(pictures(place), ElementsAre("out/1.png", "out/index.json"));
}

TEST(Lines, AreDrawnWithTheDocumentsThatCanBe) {
    const Workplace place;
    place.write("w.json", hello);
    place.write("bad.json", broken);
    place.write("odd.json", hello);
    place.write("odd.widget.toml", "familys = []");
    place.write("people.jsonl", "{}\n{}\n");
    const Finished finished =
        place.run({"render", "bad.json", "w.json", "odd.json", "--models", "people.jsonl", "-o", "out"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, AllOf(HasSubstr("bad.json:4:"), HasSubstr("odd.widget.toml:1:1: error: ")));
    EXPECT_EQ(finished.err.find("bad.json:4:"), finished.err.rfind("bad.json:4:")) << "said once";
    EXPECT_THAT(pictures(place),
                ElementsAre("out/index.json", "out/w/systemMedium-light@3x-1.png", "out/w/systemMedium-light@3x-2.png"))
        << "called as where all are drawn";
    EXPECT_EQ(place.run({"render", "bad.json", "odd.json", "--models", "people.jsonl", "-o", "none"}).status, 1);
    EXPECT_FALSE(place.has("none"));
}

TEST(Lines, MayBeDrawnAgain) {
    const Workplace place;
    place.write("w.json", hello);
    place.write("people.jsonl", "{}\n");
    place.write("out/1.png", "old");
    place.write("out/index.json", "old");
    EXPECT_EQ(place.run(lineWords()).status, 0);
    EXPECT_THAT(place.read("out/1.png"), StartsWith(pngStart));
    EXPECT_THAT(place.read("out/index.json"), StartsWith("["));
    EXPECT_THAT(pictures(place), ElementsAre("out/1.png", "out/index.json"));
}

/// The most memory that the program had at once while it drew so many pictures, in KiB.
long peakMemory(const Workplace& place, int count) {
    std::ofstream lines(place.path("people.jsonl"));
    for (int i = 0; i < count; ++i) lines << R"({"id": "p)" << i << "\", \"a\": 1}\n";
    lines.close();
    const pid_t process = place.start(lineWords({"--key", "id", "--size", "20x10"}));
    int status = 0;
    rusage used{};
    EXPECT_EQ(::wait4(process, &status, 0, &used), process);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(place.has("out/p" + std::to_string(count - 1) + ".png"));
    return used.ru_maxrss;
}

TEST(Lines, TakeNoMoreMemoryWhereThereAreMore) {
    if (!pool::keepsBlocks) GTEST_SKIP() << "a sanitizer keeps what is given back";
    const Workplace place;
    place.write("w.json", greeting);
    const long few = peakMemory(place, 2'000);
    const long many = peakMemory(place, 20'000);
    constexpr long digests = 18'000 * 64 / 1024;  // of names
    constexpr long slack = 2'048;
    EXPECT_LT(many, few + digests + slack);
}

TEST(Lines, ThatCannotBeWrittenEndTheWork) {
    const Workplace place;
    place.write("w.json", hello);
    place.write("people.jsonl", "{}\n{}\n{}\n");
    place.write("out/2.png/file", "");
    place.write("out/index.json", "old");
    const Finished finished = place.run(lineWords());
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("cannot write 'out/2.png': Is a directory"));
    EXPECT_THAT(pictures(place), ElementsAre("out/1.png", "out/2.png/file", "out/index.json"));
    EXPECT_EQ(place.read("out/index.json"), "old");
}

TEST(Lines, ComeFromStandardInput) {
    const Workplace place;
    place.write("w.json", hello);
    const Finished finished =
        place.run({"render", "w.json", "--models", "-", "--key", "id", "-o", "out"}, "{\"id\": 1}\n{\"id\": }\n");
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, StartsWith("<stdin>:2:8: error:"));
    EXPECT_THAT(pictures(place), ElementsAre("out/1.png", "out/index.json"));
}

/// Each picture is there before the next line is written.
TEST(Lines, AreDrawnAsTheyCome) {
    const Workplace place;
    place.write("w.json", hello);
    ASSERT_EQ(::mkfifo(place.path("people.jsonl").c_str(), 0600), 0);
    const pid_t process = place.start(lineWords({"--key", "id"}));
    {
        std::ofstream pipe(place.path("people.jsonl"));
        for (const char* name : {"a", "b"}) {
            pipe << R"({"id": ")" << name << "\"}\n" << std::flush;
            const std::string picture = std::string("out/") + name + ".png";
            for (int tries = 0; tries < 3000 && !place.has(picture); ++tries) ::usleep(10'000);
            EXPECT_TRUE(place.has(picture));
        }
    }
    EXPECT_EQ(waitFor(process), 0);
}

TEST(Lines, AreRefused) {
    const Workplace place;
    place.write("w.json", hello);
    place.write("people.jsonl", "{}\n");
    place.write("models/a.json", "{}");
    place.write("pictures/w.png", hello);
    const struct {
        const char* why;
        std::vector<std::string> words;
        int status;
        const char* message;
    } rows[] = {
        {"no folder", {"w.json", "--models", "people.jsonl"}, 2, "where to?"},
        {"standard output", {"w.json", "--models", "people.jsonl", "-o", "-"}, 2, "where to?"},
        {"a file", {"w.json", "--models", "people.jsonl", "-o", "x.png"}, 2, "give a folder instead of 'x.png'"},
        {"a key of files", {"w.json", "--models", "models", "--key", "id", "-o", "out"}, 2, "--key names"},
        {"a key of one model", {"w.json", "--key", "id", "-o", "x.png"}, 2, "--key names"},
        {"an empty key", {"w.json", "--models", "people.jsonl", "--key", "a..b", "-o", "out"}, 2, "one that is empty"},
        {"standard input twice", {"-", "--models", "-", "-o", "out"}, 2, "can be read only once"},
        {"another format", {"w.json", "--models", "people.jsonl", "-o", "out", "--format", "svg"}, 2, "not svg"},
        {"frames", {"w.json", "--models", "people.jsonl", "-o", "out", "--frames", "a..b"}, 2, "no plural options"},
        {"no such file", {"w.json", "--models", "gone.jsonl", "-o", "out"}, 1, "cannot read 'gone.jsonl'"},
        {"an input for an output",
         {"pictures/w.png", "--models", "people.jsonl", "-o", "pictures"},
         2,
         "could be written over by a picture"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined({"render"}, row.words));
        EXPECT_EQ(finished.status, row.status) << finished.err;
        EXPECT_THAT(finished.err, HasSubstr(row.message));
        EXPECT_FALSE(place.has("out"));
    }
}

}  // namespace
}  // namespace tavrin::cli
