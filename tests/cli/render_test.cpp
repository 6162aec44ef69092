// SPDX-License-Identifier: MIT
#include <chrono>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::string_view pngEnd = "IEND\xAE\x42\x60\x82";

bool isWholePng(std::string_view bytes) { return bytes.starts_with(pngStart) && bytes.ends_with(pngEnd); }

/// Width and height as the PNG's header says.
std::pair<int, int> pngSize(const std::string& bytes) {
    const auto number = [&](std::size_t at) {
        int value = 0;
        for (std::size_t i = at; i < at + 4; ++i) value = value * 256 + static_cast<unsigned char>(bytes.at(i));
        return value;
    };
    return {number(16), number(20)};
}

TEST(Render, WritesWhereItIsTold) {
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* file;
        std::string_view start;
    } rows[] = {
        {"the document's name", {"in/widget.json"}, "widget.png", pngStart},
        {"a name of its own", {"in/widget.json", "-o", "x.png"}, "x.png", pngStart},
        {"SVG", {"in/widget.json", "-o", "x.svg"}, "x.svg", "<?xml"},
        {"PDF", {"in/widget.json", "--output=x.pdf"}, "x.pdf", "%PDF"},
        {"WebP", {"in/widget.json", "-o", "x.webp"}, "x.webp", "RIFF"},
        {"JPEG", {"in/widget.json", "-o", "x.jpeg"}, "x.jpeg", "\xFF\xD8\xFF"},
        {"JPEG by its short suffix", {"in/widget.json", "-o", "x.JPG"}, "x.JPG", "\xFF\xD8\xFF"},
        {"JPEG of both names", {"in/widget.json", "-o", "x.jpg", "--format", "jpeg"}, "x.jpg", "\xFF\xD8\xFF"},
        {"JPEG under the document's name", {"in/widget.json", "--format=jpeg"}, "widget.jpeg", "\xFF\xD8\xFF"},
        {"a still WebP by one plural option", {"in/widget.json", "--scales=2", "-o", "x.webp"}, "x.webp", "RIFF"},
        {"a suffix in capitals", {"in/widget.json", "-ox.SVG"}, "x.SVG", "<?xml"},
        {"a format instead of a suffix", {"in/widget.json", "-o", "x.new", "--format", "svg"}, "x.new", "<?xml"},
        {"a format for the document's name", {"in/widget.json", "--format", "pdf"}, "widget.pdf", "%PDF"},
        {"a folder", {"in/widget.json", "-o", "in"}, "in/widget.png", pngStart},
        {"a folder that is missing", {"in/widget.json", "-o", "a/b/"}, "a/b/widget.png", pngStart},
        {"standard input", {"-"}, "stdin.png", pngStart},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Workplace place;
        place.write("in/widget.json", hello);
        const Finished finished = place.run(joined({"render"}, row.words), hello);
        EXPECT_EQ(finished.status, 0);
        EXPECT_EQ(finished.out + finished.err, "");
        EXPECT_EQ(place.files().size(), 2u);
        EXPECT_THAT(place.read(row.file), StartsWith(row.start));
    }
}

TEST(Render, WritesToStandardOutput) {
    const Workplace place;
    const Finished png = place.run({"render", "-", "-o", "-"}, hello);
    EXPECT_EQ(png.status, 0);
    EXPECT_TRUE(isWholePng(png.out));
    EXPECT_THAT(place.run({"render", "-", "-o", "-", "--format", "svg"}, hello).out, StartsWith("<?xml"));
    EXPECT_THAT(place.files(), ElementsAre());
}

TEST(Render, DrawsInTheSizeThatIsAskedFor) {
    const struct {
        std::vector<std::string> words;
        std::pair<int, int> size;
    } rows[] = {
        {{}, {1014, 474}},
        {{"--family", "systemSmall", "--scale", "2"}, {316, 316}},
        {{"--family", "systemExtraLarge", "--screen", "1024x1366", "--scale=1"}, {795, 379}},
        {{"--size", "20x10.5", "--scale", "2"}, {40, 21}},
        {{"--family", "accessoryInline", "--scale", "1"}, {234, 26}},
    };
    const Workplace place;
    place.write("a.json", hello);
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.words));
        EXPECT_EQ(pngSize(place.run(joined({"render", "a.json", "-o", "-"}, row.words)).out), row.size);
    }
}

TEST(Render, OptionsChangeThePicture) {
    const Workplace place;
    place.write("a.json", hello);
    const auto picture = [&](const std::vector<std::string>& words) {
        return place.run(joined({"render", "a.json", "-o", "-"}, words)).out;
    };
    const std::string usual = picture({});
    EXPECT_EQ(picture({"--appearance", "light", "--background", "auto", "--compression", "fast"}), usual);
    EXPECT_EQ(picture({"--background", "FFFFFF"}), usual);
    EXPECT_EQ(picture({"--background", "#ff9500"}), picture({"--background", "FF9500"}));
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"--appearance", "dark"}, {"--background", "none"}, {"--background", "#FF9500"}, {"--rounded"}}) {
        SCOPED_TRACE(words.front());
        EXPECT_TRUE(isWholePng(picture(words)));
        EXPECT_NE(picture(words), usual);
    }
    for (const char* compression : {"balanced", "small"})
        EXPECT_LT(picture({"--compression", compression}).size(), usual.size()) << compression;
}

TEST(Render, AQualityChangesThePicture) {
    const Workplace place;
    place.write("a.json", hello);
    const auto sizeOf = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"render", "a.json", "-o", "-"});
        return place.run(words).out.size();
    };
    for (const char* format : {"jpeg", "webp"})
        EXPECT_LT(sizeOf({"--format", format, "--quality", "5"}), sizeOf({"--format", format, "--quality", "100"}));
    EXPECT_EQ(sizeOf({"--format", "jpeg"}), sizeOf({"--format", "jpeg", "--quality", "85"}));
    EXPECT_LT(sizeOf({"--format", "webp", "--compression", "small"}), sizeOf({"--format", "webp"}));
}

TEST(Render, SeveralDocumentsInOrderAndPastFailures) {
    const Workplace place;
    std::vector<std::string> words{"render", "-o", "out/of/here"};
    std::string errors;
    for (int i = 0; i < 20; ++i) {
        const std::string name = "w" + std::to_string(i) + ".json";
        place.write(name, i % 7 == 3 ? R"({"version": "1.0", "nodes": {}})" : hello);
        words.push_back(name);
        if (i % 7 == 3) errors += name + ": error: Engine: view must have main node\n";
    }
    words.emplace_back("missing.json");
    errors += "tavrin: error: cannot read 'missing.json': No such file or directory\n";
    for (int round = 0; round < 3; ++round) {
        const Finished finished = place.run(words);
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(finished.err, errors);
    }
    EXPECT_EQ(place.files().size(), 20u + 17u);
    EXPECT_TRUE(isWholePng(place.read("out/of/here/w0.png")));
    EXPECT_FALSE(place.has("out/of/here/w3.png"));
}

TEST(Render, SeveralDocumentsShareOneModel) {
    const Workplace place;
    place.write("a.json",
                R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a}}"}}})");
    place.write("b.json", hello);
    EXPECT_EQ(place.run({"render", "a.json", "b.json", "--model", "-"}, R"({"a": "x"})").status, 0);
    EXPECT_THAT(place.files(), ElementsAre("a.json", "a.png", "b.json", "b.png"));
}

TEST(Render, LeavesNothingBehindAFailure) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("b.json", broken);
    place.write("file", "as it was");
    place.write("folder.png/file", "as it was");
    place.write("b.png", "as it was");
    const std::vector<std::string> before = place.files();
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {"the document is broken", {"b.json"}, "4:"},
        {"the same in a folder", {"b.json", "-o", "new/"}, "4:"},
        {"a folder has the file's name", {"a.json", "-o", "folder.png"}, "cannot write 'folder.png': Is a directory"},
        {"no such folder", {"a.json", "-o", "none/a.png"}, "cannot write 'none/a.png': No such file or directory"},
        {"a file where a folder should be", {"a.json", "a.json/../b.json", "-o", "file"}, "Not a directory"},
        {"a file within the folder's path", {"a.json", "-o", "file/x/"}, "Not a directory"},
        {"too many pixels", {"a.json", "--size", "100000x100000"}, "Render"},
        {"too wide for a WebP", {"a.json", "--size", "16384x1", "--scale=1", "-o", "a.webp"}, "1 to 16383 pixels"},
        {"a size beyond all bounds", {"a.json", "--size", "1e300x1e300"}, "Render"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run(joined({"render"}, row.words));
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err, HasSubstr(row.message));
        EXPECT_EQ(place.files(), before);
        EXPECT_FALSE(place.has("new"));
    }
    EXPECT_EQ(place.read("b.png"), "as it was");
}

TEST(Render, NeverWritesOverWhatItReads) {
    const struct {
        const char* why;
        std::vector<std::string> words;
    } rows[] = {
        {"the document", {"render", "a.json", "--format", "png", "-o", "a.json"}},
        {"the document by another way", {"render", "a.json", "--format", "svg", "-o", "sub/../a.json"}},
        {"a link to the document", {"render", "a.json", "-o", "link.png"}},
        {"a document that is a link", {"render", "link.png", "--format", "png", "-o", "a.json"}},
        {"a link that leads nowhere else", {"render", "link.png"}},
        {"the model beside it", {"render", "b.json", "--format", "png", "-o", "b.model.json"}},
        {"the settings", {"render", "b.json", "--format", "png", "-o", "widget.toml"}},
        {"the model", {"render", "b.json", "--model", "m.json", "--format", "pdf", "-o", "m.json"}},
        {"standard input", {"render", "-", "-o", "in.png"}},
        {"one of several", {"render", "b.json", "link.png", "-o", "."}},
        {"an animation",
         {"render", "a.json", "--frames", "2026-03-01T09:41:00Z..2026-03-01T09:41:01Z", "-o", "link.png"}},
        {"numbered frames",
         {"render", "a.json", "--frames", "2026-03-01T09:41:00Z..2026-03-01T09:41:01Z", "-o", "f%d.png"}},
        {"an index", {"render", "index.json", "--scales", "1,2", "-o", "."}},
        {"a model of several", {"render", "b.json", "--models", ".", "--scales", "1,2", "-o", "."}},
        {"a snapshot", {"snapshot", "b.json", "b/systemMedium-light@3x.json", "--dir", "."}},
    };
    const Workplace place;
    for (const char* name : {"a.json", "b.json", "index.json", "in.png", "b/systemMedium-light@3x.json"})
        place.write(name, hello);
    place.write("m.json", "{}");
    place.write("b.model.json", "{}");
    place.write("widget.toml", "background = \"none\"");
    place.write("sub/readme", "");
    for (const char* link : {"link.png", "f2.png"}) std::filesystem::create_symlink("a.json", place.path(link));
    const std::vector<std::string> before = place.files();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.runFrom("in.png", row.words);
        EXPECT_EQ(finished.status, 2);
        EXPECT_THAT(finished.err, HasSubstr("would be written over the "));
        EXPECT_EQ(place.files(), before);
        for (const char* name : {"a.json", "b.json", "index.json", "in.png"}) EXPECT_EQ(place.read(name), hello);
        EXPECT_EQ(place.read("m.json"), "{}");
    }
    EXPECT_EQ(place.run({"render", "a.json", "-o", "/dev/null", "--format", "png"}).status, 0);
}

TEST(Render, AFullDiskIsAFailure) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
    const Workplace place;
    place.write("a.json", hello);
    const Finished finished = place.run({"render", "a.json", "-o", "/dev/full", "--format", "png", "--errors", "json"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(errorText(finished, "type"), "IOError");
    EXPECT_EQ(errorText(finished, "message"), "cannot write '/dev/full': No space left on device");
}

TEST(Render, AFileThatMayNotGrowIsAFailure) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("a.png", "old");
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    struct rlimit small = before;
    small.rlim_cur = 500;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const Finished finished = place.run({"render", "a.json"});
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("cannot write 'a.png': File too large"));
    EXPECT_THAT(place.files(), ElementsAre("a.json", "a.png"));
    EXPECT_TRUE(place.read("a.png") == "old");
}

TEST(Render, WaitsForAPipeThatIsNamed) {
    const Workplace place;
    for (const char* const pipe : {"a.json", "m.json"}) ASSERT_EQ(::mkfifo(place.path(pipe).c_str(), 0600), 0);
    const pid_t process = place.start({"render", "a.json", "--model", "m.json"});
    place.write("m.json", R"({"a": "x"})");
    place.write("a.json", hello);
    EXPECT_EQ(waitFor(process), 0);
    EXPECT_TRUE(isWholePng(place.read("a.png")));
}

TEST(Render, ReplacesAFileKeepingItsLinkAndPermissions) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("real.png", "old");
    std::filesystem::permissions(place.path("real.png"), std::filesystem::perms(0640));
    std::filesystem::create_symlink("real.png", place.path("link.png"));
    EXPECT_EQ(place.run({"render", "a.json", "-o", "link.png"}).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(place.path("link.png")));
    EXPECT_TRUE(isWholePng(place.read("real.png")));
    EXPECT_EQ(std::filesystem::status(place.path("real.png")).permissions(), std::filesystem::perms(0640));
}

TEST(Render, AnInterruptedRunLeavesWholeFilesOnly) {
    for (int delay = 0; delay < 40; delay += 2) {
        const Workplace place;
        std::vector<std::string> words{"render", "--compression", "small"};
        for (int i = 0; i < 8; ++i) {
            words.emplace_back("w" + std::to_string(i) + ".json");
            place.write(words.back(), hello);
        }
        const pid_t process = place.start(words);
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
        ::kill(process, delay % 4 == 0 ? SIGTERM : SIGINT);
        const int status = waitFor(process);
        EXPECT_TRUE(status == 0 || status == -SIGTERM || status == -SIGINT) << status;
        for (const std::string& name : place.files()) {
            if (!name.ends_with(".json")) {
                EXPECT_TRUE(name.ends_with(".png") && isWholePng(place.read(name))) << name;
            }
        }
    }
}

}  // namespace
}  // namespace tavrin::cli
