// SPDX-License-Identifier: MIT
#include <filesystem>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A document with a timer.
constexpr std::string_view countdown =
    R"({"version": "1.0", "nodes": {"main": {"type": "timer", "timestamp": 1772358016}}})";

bool isApng(const std::string& bytes) { return bytes.starts_with(pngStart) && bytes.substr(37, 4) == "acTL"; }
bool isWebp(const std::string& bytes) { return bytes.starts_with("RIFF") && bytes.substr(8, 8) == "WEBPVP8X"; }

std::vector<std::string> wordsFor(const std::vector<std::string>& more, const std::string& document = "clock.json") {
    return joined({"render", document, "--frames", "2026-03-01T09:41:00Z..2026-03-01T09:41:02Z", "--size", "60x30",
                   "--scale", "1"},
                  more);
}

TEST(Frames, AreWrittenWhereTheyAreTold) {
    const struct {
        const char* why;
        std::vector<std::string> words;
        std::vector<std::string> files;
        bool (*isWritten)(const std::string&);
    } rows[] = {
        {"the document's name", {}, {"clock.png"}, isApng},
        {"the document's name and a format", {"--format", "webp"}, {"clock.webp"}, isWebp},
        {"WebP", {"-o", "x.webp"}, {"x.webp"}, isWebp},
        {"a suffix in capitals", {"-o", "x.WEBP"}, {"x.WEBP"}, isWebp},
        {"PNG", {"-o", "x.png"}, {"x.png"}, isApng},
        {"the other suffix of an animated PNG", {"-o", "x.apng", "--format", "png"}, {"x.apng"}, isApng},
        {"a format instead of a suffix", {"-o", "x.new", "--format", "webp"}, {"x.new"}, isWebp},
        {"an animation in a folder", {"-o", "in", "--format", "apng"}, {"in/clock.apng"}, isApng},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("in/clock.json", countdown);
        const Finished finished = place.run(wordsFor(row.words, "in/clock.json"));
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.out + finished.err, "");
        EXPECT_EQ(place.files().size(), 2U);
        EXPECT_TRUE(row.isWritten(place.read(row.files.front())));
    }
}

TEST(Frames, AreNumbered) {
    const struct {
        const char* why;
        std::string output;
        std::vector<std::string> files;
    } rows[] = {
        {"four digits", "x-%04d.png", {"x-0001.png", "x-0002.png", "x-0003.png"}},
        {"as many digits as it takes", "%d.png", {"1.png", "2.png", "3.png"}},
        {"in a folder that is missing", "a/b/%02d.png", {"a/b/01.png", "a/b/02.png", "a/b/03.png"}},
        {"a folder", "a/", {"a/clock-0001.png", "a/clock-0002.png", "a/clock-0003.png"}},
        {"other signs", "50%-%d%.png", {"50%-1%.png", "50%-2%.png", "50%-3%.png"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("z/clock.json", countdown);
        EXPECT_EQ(place.run(wordsFor({"-o", row.output}, "z/clock.json")).status, 0);
        std::vector<std::string> files = row.files;
        files.emplace_back("z/clock.json");
        EXPECT_EQ(place.files(), files);
        for (const std::string& file : row.files) EXPECT_THAT(place.read(file), StartsWith(pngStart));
    }
}

TEST(Frames, TheDocumentsNameHasNoPlaceForNumbers) {
    const Workplace place;
    place.write("%d.json", countdown);
    EXPECT_EQ(place.run(wordsFor({}, "%d.json")).status, 0);
    EXPECT_EQ(place.run(wordsFor({"-o", "a/"}, "%d.json")).status, 0);
    EXPECT_THAT(place.files(), ElementsAre("%d.json", "%d.png", "a/%d-0001.png", "a/%d-0002.png", "a/%d-0003.png"));
}

TEST(Frames, AreThePicturesOfTheirMoments) {
    const Workplace place;
    place.write("clock.json", countdown);
    EXPECT_EQ(place.run(wordsFor({"-o", "%d.png", "--every", "0.5"})).status, 0);
    const char* const moments[] = {"09:41:00Z", "09:41:00.5Z", "09:41:01Z", "09:41:01.5Z", "09:41:02Z"};
    for (int number = 1; number <= 5; ++number) {
        EXPECT_EQ(place
                      .run({"render", "clock.json", "--date", std::string("2026-03-01T") + moments[number - 1],
                            "--size", "60x30", "--scale", "1", "-o", "single.png"})
                      .status,
                  0);
        EXPECT_TRUE(place.read(std::to_string(number) + ".png") == place.read("single.png")) << number;
    }
    EXPECT_FALSE(place.has("6.png"));
}

TEST(Frames, ATimerFromNowStartsAtTheFirst) {
    const Workplace place;
    place.write("now.json", R"({"version": "1.0", "nodes": {"main": {"type": "timer"}}})");
    place.write("then.json", R"({"version": "1.0", "nodes": {"main": {"type": "timer", "timestamp": 1772358016}}})");
    for (const std::string name : {"now", "then"})
        EXPECT_EQ(place
                      .run({"render", name + ".json", "-o", name + ".webp", "--frames",
                            "2026-03-01T09:40:16Z..2026-03-01T09:40:19Z"})
                      .status,
                  0);
    EXPECT_TRUE(isWebp(place.read("now.webp")));
    EXPECT_TRUE(place.read("now.webp") == place.read("then.webp"));
}

TEST(Frames, GoThroughPipes) {
    const Workplace place;
    const Finished png = place.run(wordsFor({"-o", "-"}, "-"), countdown);
    EXPECT_EQ(png.status, 0);
    EXPECT_TRUE(isApng(png.out));
    EXPECT_TRUE(isWebp(place.run(wordsFor({"-o", "-", "--format", "webp"}, "-"), countdown).out));
    EXPECT_THAT(place.files(), ElementsAre());
}

TEST(Frames, LeaveNothingBehindWhenTheyFail) {
    const Workplace place;
    place.write("broken.json", broken);
    place.write("file", "");
    for (const char* output : {"x.webp", "x-%d.png", "folder/"})
        EXPECT_EQ(place.run(wordsFor({"-o", output}, "broken.json")).status, 1);
    EXPECT_THAT(place.files(), ElementsAre("broken.json", "file"));
    place.write("clock.json", countdown);
    EXPECT_THAT(place.run(wordsFor({"-o", "file/%d.png"})).err, HasSubstr("cannot write into 'file'"));
    const Finished large = place.run(
        {"render", "clock.json", "--frames", "2026-03-01T00:00:00Z..2026-03-01T03:00:00Z", "--size", "2000x1000"});
    EXPECT_EQ(large.status, 1);
    EXPECT_THAT(large.err, HasSubstr("10801 frames of 6000 x 3000 pixels: all frames may have at most"));
    EXPECT_THAT(place.files(), ElementsAre("broken.json", "clock.json", "file"));
}

TEST(Frames, ReplaceOldOnesTogether) {
    const Workplace place;
    place.write("clock.json", countdown);
    place.write("x-1.png", "old");
    place.write("x-2.png", "old");
    std::filesystem::create_directory(place.path("x-3.png"));
    const Finished finished = place.run(wordsFor({"-o", "x-%d.png"}));
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("cannot write 'x-3.png'"));
    EXPECT_THAT(place.files(), ElementsAre("clock.json", "x-1.png", "x-2.png"));
    EXPECT_TRUE(place.read("x-1.png") == "old");
    EXPECT_TRUE(place.read("x-2.png") == "old");
    EXPECT_TRUE(place.has("x-3.png"));
    std::filesystem::remove(place.path("x-3.png"));
    EXPECT_EQ(place.run(wordsFor({"-o", "x-%d.png"})).status, 0);
    EXPECT_THAT(place.files(), ElementsAre("clock.json", "x-1.png", "x-2.png", "x-3.png"));
    for (const char* file : {"x-1.png", "x-2.png", "x-3.png"}) EXPECT_THAT(place.read(file), StartsWith(pngStart));
}

}  // namespace
}  // namespace tavrin::cli
