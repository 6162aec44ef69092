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
using ::testing::StartsWith;

TEST(Matrix, DrawsEveryCombination) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("m/sun.json", R"({"a": "Sun"})");
    place.write("m/rain.json", R"({"a": "Rain"})");
    place.write("m/notes.txt", "no model");
    const Finished finished = place.run({"render", "w.json", "-o", "out", "--families", "systemSmall", "--appearances",
                                         "all", "--scales", "1,2", "--models", "m", "--dates", "2026-03-01T09:41:00Z"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err, "");
    EXPECT_THAT(place.files(), ElementsAre("m/notes.txt", "m/rain.json", "m/sun.json", "out/index.html",
                                           "out/index.json", "out/w/systemSmall-dark@1x-rain-2026-03-01T094100Z.png",
                                           "out/w/systemSmall-dark@1x-sun-2026-03-01T094100Z.png",
                                           "out/w/systemSmall-dark@2x-rain-2026-03-01T094100Z.png",
                                           "out/w/systemSmall-dark@2x-sun-2026-03-01T094100Z.png",
                                           "out/w/systemSmall-light@1x-rain-2026-03-01T094100Z.png",
                                           "out/w/systemSmall-light@1x-sun-2026-03-01T094100Z.png",
                                           "out/w/systemSmall-light@2x-rain-2026-03-01T094100Z.png",
                                           "out/w/systemSmall-light@2x-sun-2026-03-01T094100Z.png", "w.json"));
}

TEST(Matrix, DrawsWhatASingleRenderDraws) {
    const Workplace place;
    place.write("w.json", hello);
    EXPECT_EQ(place.run({"render", "w.json", "-o", "out", "--families", "all", "--appearances", "dark", "--scale", "2"})
                  .status,
              0);
    for (const char* family : {"systemSmall", "systemMedium", "systemLarge", "accessoryCircular"}) {
        SCOPED_TRACE(family);
        EXPECT_EQ(
            place.run({"render", "w.json", "-o", "one.png", "--family", family, "--appearance", "dark", "--scale", "2"})
                .status,
            0);
        EXPECT_EQ(place.read("out/w/" + std::string(family) + "-dark@2x.png"), place.read("one.png"));
    }
    EXPECT_FALSE(place.has("out/w/systemExtraLarge-dark@2x.png")) << "a family that the screen has not";
}

TEST(Matrix, OnePictureNeedsNoFolder) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("v.json", hello);
    place.write("m/only.json", R"({"a": "Sun"})");
    const std::vector<std::string> one{
        "--families", "systemSmall", "--appearances",       "dark", "--scales", "2", "--models",
        "m",          "--dates",     "2026-03-01T09:41:00Z"};
    const auto render = [&](const std::vector<std::string>& words) {
        return place.run(joined(joined({"render"}, words), one));
    };
    const Finished single = place.run({"render", "w.json", "-o", "-", "--family", "systemSmall", "--appearance", "dark",
                                       "--scale", "2", "--model", "m/only.json"});
    EXPECT_EQ(render({"w.json", "-o", "-"}).out, single.out);
    EXPECT_EQ(render({"w.json", "-o", "x.png"}).status, 0);
    EXPECT_EQ(place.read("x.png"), single.out);
    EXPECT_EQ(render({"w.json", "v.json"}).status, 0);
    EXPECT_EQ(place.read("w.png"), single.out);
    EXPECT_EQ(render({"w.json", "--format", "svg"}).status, 0);
    EXPECT_THAT(place.files(), ElementsAre("m/only.json", "v.json", "v.png", "w.json", "w.png", "w.svg", "x.png"));
}

TEST(Matrix, IndexTellsEverything) {
    const Workplace place;
    place.write("w.json", hello);
    place.write("bad.json", broken);
    const Finished finished = place.run({"render", "w.json", "bad.json", "-o", "out", "--scales", "1", "--hashes"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, StartsWith("bad.json:4:"));
    const JSON index = JSON::parse(place.read("out/index.json"));
    const JSON* const good = index.find(std::int64_t{0});
    const JSON* const bad = index.find(std::int64_t{1});
    ASSERT_TRUE(good && bad);
    EXPECT_EQ(index.find(std::int64_t{2}), nullptr);
    const struct {
        const char* key;
        const char* ofGood;
        const char* ofBad;
    } rows[] = {
        {"file", "w/systemMedium-light@1x.png", "null"},
        {"document", "w.json", "bad.json"},
        {"model", "null", "null"},
        {"family", "systemMedium", "systemMedium"},
        {"appearance", "light", "light"},
        {"scale", "1", "1"},
        {"date", "null", "null"},
        {"size", "[338,158]", "[338,158]"},
        {"pixels", "[338,158]", "null"},
        {"warnings", "[]", "[]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key);
        EXPECT_EQ(good->find(row.key)->description(), row.ofGood);
        EXPECT_EQ(bad->find(row.key)->description(), row.ofBad);
    }
    EXPECT_EQ(good->find("sha256")->description().size(), 64U);
    EXPECT_EQ(good->find("error")->description(), "null");
    EXPECT_EQ(bad->find("sha256")->description(), "null");
    EXPECT_THAT(bad->find("error")->description(), StartsWith("bad.json:4:"));
    EXPECT_FALSE(place.has("out/bad"));
}

TEST(Matrix, DigestIsThatOfTheFile) {
    const Workplace place;
    place.write("w.json", hello);
    EXPECT_EQ(place.run({"render", "w.json", "-o", "out", "--scales", "1", "--hashes"}).status, 0);
    const std::string index = place.read("out/index.json");
    const std::string command =
        "cd " + place.path("out").string() +
        " && sha256sum w/*.png | cut -c1-64 | xargs -I{} grep -q '\"sha256\": \"{}\"' index.json";
    EXPECT_EQ(std::system(command.c_str()), 0) << index;
}

TEST(Matrix, DigestIsMadeOnlyWhenAskedFor) {
    const Workplace place;
    place.write("w.json", hello);
    EXPECT_EQ(place.run({"render", "w.json", "-o", "out", "--scales", "1"}).status, 0);
    const JSON index = JSON::parse(place.read("out/index.json"));
    EXPECT_EQ(index.find(std::int64_t{0})->find("sha256")->description(), "null");
}

TEST(Matrix, ContactSheetEscapesWhatItShows) {
    const Workplace place;
    place.write("a<b>&.json", hello);
    place.write("bad.json", R"({"version": "1.0", "nodes": {"main": {"type": "<script>alert(1)</script>"}}})");
    EXPECT_EQ(place.run({"render", "a<b>&.json", "bad.json", "-o", "out", "--scales", "1,2"}).status, 1);
    const std::string page = place.read("out/index.html");
    EXPECT_THAT(page, AllOf(HasSubstr("<h2>a&lt;b&gt;&amp;</h2>"), HasSubstr("&lt;script&gt;alert(1)&lt;/script&gt;"),
                            Not(HasSubstr("<script>"))));
    EXPECT_THAT(page, HasSubstr("srcset=\"./a%3Cb%3E%26/systemMedium-light@1x.png 1x, "
                                "./a%3Cb%3E%26/systemMedium-light@2x.png 2x\" width=\"338\" height=\"158\""));
    EXPECT_THAT(page, Not(HasSubstr("http")));
}

TEST(Matrix, ContactSheetGivesLockScreenWidgetsTheirShapes) {
    const Workplace place;
    place.write("w.json", hello);
    EXPECT_EQ(place.run({"render", "w.json", "-o", "out", "--families", "all", "--scales", "1"}).status, 0);
    const std::string page = place.read("out/index.html");
    for (const std::string family : {"accessoryCircular", "accessoryRectangular", "accessoryInline"})
        EXPECT_THAT(page, AllOf(HasSubstr("\n  ." + family + " { border-radius: "),
                                HasSubstr(" alt=\"" + family + ", light\" class=\"" + family + "\" ")));
}

TEST(Matrix, TellsDocumentsOfOneNameApart) {
    const Workplace place;
    place.write("x/sun/w.json", hello);
    place.write("x/rain/w.json", hello);
    place.write("other.json", hello);
    EXPECT_EQ(place.run({"render", "x/sun/w.json", "x/rain/w.json", "other.json", "-o", "out", "--scales", "1"}).status,
              0);
    for (const char* file : {"out/x/sun/w/systemMedium-light@1x.png", "out/x/rain/w/systemMedium-light@1x.png",
                             "out/other/systemMedium-light@1x.png"})
        EXPECT_TRUE(place.has(file)) << file;
    EXPECT_EQ(place.run({"render", "other.json", "./other.json", "-o", "out", "--scales", "1"}).status, 2);
}

TEST(Matrix, ReplacesOldPicturesTogether) {
    const Workplace place;
    place.write("w.json", hello);
    place.write("out/index.json", "old");
    place.write("out/w/systemMedium-light@1x.png", "old");
    place.write("out/w/systemMedium-light@2x.png/file", "");
    const std::vector<std::string> before = place.files();
    const std::vector<std::string> words{"render", "w.json", "-o", "out", "--scales", "1,2"};
    const Finished finished = place.run(words);
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("cannot write 'out/w/systemMedium-light@2x.png': Is a directory"));
    EXPECT_EQ(place.files(), before);
    EXPECT_EQ(place.read("out/index.json"), "old");
    EXPECT_TRUE(place.read("out/w/systemMedium-light@1x.png") == "old");
}

TEST(Matrix, WaitsForNoPipeAmongModels) {
    const Workplace place;
    place.write("w.json", greeting);
    place.write("models/a.json", R"({"a": "x"})");
    ASSERT_EQ(::mkfifo(place.path("models/b.json").c_str(), 0600), 0);
    const Finished finished = place.run({"render", "w.json", "--models", "models", "-o", "out"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("cannot read 'models/b.json': Not a regular file"));
    EXPECT_FALSE(place.has("out"));
}

TEST(Matrix, IsRefused) {
    const Workplace place;
    place.write("w.json", hello);
    place.write("empty/readme.txt", "");
    place.write("file", "");
    std::string scales = "1";
    for (int scale = 2; scale <= 100; ++scale) scales += "," + std::to_string(scale);
    std::string moments = "2026-03-01T09:41:00Z";
    for (int second = 10; second < 60; ++second) moments += ",2026-03-01T09:41:" + std::to_string(second) + "Z";
    const struct {
        const char* why;
        std::vector<std::string> words;
        int status;
        const char* message;
    } rows[] = {
        {"no folder", {"--scales", "1,2"}, 2, "where to?"},
        {"standard output", {"--scales", "1,2", "-o", "-"}, 2, "where to?"},
        {"families and a family", {"--families", "all", "--family", "systemSmall"}, 2, "instead of --family;"},
        {"families and a size", {"--families", "all", "--size", "1x1"}, 2, "instead of --size;"},
        {"scales and a scale", {"--scales", "1", "--scale", "1"}, 2, "instead of --scale;"},
        {"appearances and one", {"--appearances", "all", "--appearance", "dark"}, 2, "instead of --appearance;"},
        {"models and a model", {"--models", "m", "--model", "m.json"}, 2, "instead of --model;"},
        {"dates and a date", {"--dates", "x", "--date", "2026-03-01T09:41:00Z"}, 2, "--date"},
        {"misspelt family", {"--families", "systemSmall,systemlarge", "-o", "out"}, 2, "did you mean 'systemLarge'?"},
        {"an empty part", {"--scales", "1,", "-o", "out"}, 2, "not ''"},
        {"hashes of no index", {"--hashes", "-o", "w.png"}, 2, "--hashes is for the index"},
        {"another format", {"--scales", "1", "-o", "out", "--format", "pdf"}, 2, "drawn as png, not pdf"},
        {"a folder without models", {"--models", "empty", "-o", "out"}, 1, "no model (*.json) in 'empty'"},
        {"a folder that is missing", {"--models", "gone", "-o", "out"}, 1, "cannot read 'gone'"},
        {"a file for a folder", {"--scales", "1", "-o", "file"}, 1, "'file'"},
        {"too many",
         {"--scales", scales, "--dates", moments, "--appearances", "all", "-o", "out"},
         2,
         "10200 pictures; 10000 are the most"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined({"render", "w.json"}, row.words));
        EXPECT_EQ(finished.status, row.status) << finished.err;
        EXPECT_THAT(finished.err, HasSubstr(row.message));
        EXPECT_FALSE(place.has("out"));
    }
}

}  // namespace
}  // namespace tavrin::cli
