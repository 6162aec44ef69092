// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

TEST(Print, TreeAndLayout) {
    const Workplace place;
    const Finished tree = place.run({"tree", "-"}, hello);
    EXPECT_EQ(tree.status, 0);
    EXPECT_EQ(tree.err, "");
    EXPECT_TRUE(tree.out.ends_with("}\n"));
    EXPECT_EQ(JSON::parse(tree.out).find("text")->description(), "Hello");
    EXPECT_EQ(JSON::parse(tree.out).find("frame"), nullptr);

    const Finished layout = place.run({"layout", "-", "--size", "200x100"}, hello);
    const JSON parsed = JSON::parse(layout.out);
    const JSON* const frame = parsed.find("frame");
    ASSERT_TRUE(frame && frame->find(std::int64_t{3}));
    EXPECT_TRUE(layout.out.ends_with("}\n"));
}

TEST(Print, Targets) {
    const Workplace place;
    const Finished finished =
        place.run({"targets", "-", "--size", "100x50"},
                  R"({"version": "1.0", "nodes": {"main": {"type": "link", "url": "app:b", "view": {"type": "circle"},
            "modifiers": [{"type": "offset", "x": 10, "y": 0}, {"type": "widgetURL", "url": "app:a"}]}}})");
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err, "");
    EXPECT_EQ(finished.out, R"({
  "targets": [
    {
      "kind": "widget",
      "destination": "app:a",
      "frame": [0, 0, 100, 50]
    },
    {
      "kind": "widgetURL",
      "destination": "app:a",
      "frame": [25, 0, 50, 50]
    },
    {
      "kind": "link",
      "destination": "app:b",
      "frame": [35, 0, 50, 50]
    }
  ]
}
)");
    EXPECT_EQ(place.run({"targets", "-"}, hello).out, "{\n  \"targets\": []\n}\n");
    EXPECT_EQ(place.run({"targets", "a.json", "b.json"}).status, 2);
}

TEST(Print, TargetsAreThoseOfTheFamily) {
    const Workplace place;
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "link", "url": "app:b",
        "view": {"type": "color", "value": "#336699"}, "modifiers": [{"type": "widgetURL", "url": "app:a"}]}}})");
    const struct {
        std::vector<std::string> words;
        bool linksCanBeTapped;
        const char* widget;  // which the widget's own address covers
    } rows[] = {
        {{}, true, "[0, 0, 338, 158]"},
        {{"--family", "systemSmall"}, false, "[0, 0, 158, 158]"},
        {{"--size", "158x158"}, true, "[0, 0, 158, 158]"},
        {{"--family", "systemLarge"}, true, "[0, 0, 338, 354]"},
        {{"--family", "systemExtraLarge", "--screen", "834x1112"}, true, "[0, 0, 682, 327.5]"},
        {{"--family", "accessoryCircular"}, false, "[0, 0, 72, 72]"},
        {{"--family", "accessoryRectangular", "--screen", "375x667"}, false, "[0, 0, 153, 68]"},
        {{"--family", "accessoryInline"}, false, "[0, 0, 234, 26]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.words));
        const auto outputOf = [&](const std::vector<std::string>& words) {
            return place.run(joined(words, row.words)).out;
        };
        const std::string targets = outputOf({"targets", "a.json"});
        EXPECT_THAT(targets, HasSubstr("\"destination\": \"app:a\",\n      \"frame\": " + std::string(row.widget)));
        EXPECT_EQ(targets.find("\"link\"") != std::string::npos, row.linksCanBeTapped);
        EXPECT_EQ(targets.find("\"widgetURL\"") != std::string::npos, row.linksCanBeTapped);
        const std::string svg = outputOf({"render", "a.json", "-o", "-", "--format", "svg"});
        EXPECT_THAT(svg, HasSubstr("href=\"app:a\""));
        EXPECT_EQ(svg.find("href=\"app:b\"") != std::string::npos, row.linksCanBeTapped);
    }
}

TEST(Print, ClockHandsTurnInTheDevicesZone) {
    const Workplace place;
    const Finished tree = place.run({"tree", "-", "--time-zone", "Asia/Tokyo"},
                                    R"({"version": "1.2", "nodes": {"main": {"type": "circle", "modifiers": [
            {"type": "clockHandRotationEffect", "period": 60}]}}})");
    EXPECT_THAT(tree.out, HasSubstr("\"timeZone\": \"Asia/Tokyo\""));
}

TEST(Print, NowIsTheDateThatIsGiven) {
    const Workplace place;
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "timer"}}})");
    const Finished finished = place.run({"tree", "a.json", "--date", "1970-01-01T01:00:10+01:00"});
    EXPECT_THAT(finished.out, HasSubstr("\"timer\": 10,"));
}

TEST(Print, NothingIsSaidWhereAllIsWell) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("b.json", hello);
    const Finished finished = place.run({"check", "a.json", "b.json"});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.out + finished.err, "");
}

TEST(Print, CheckReportsEveryDocumentInOrder) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("b.json", broken);
    place.write("c.json", R"({"version": "1.0", "nodes": {}})");
    const Finished finished = place.run({"check", "c.json", "a.json", "b.json"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_LT(finished.err.find("c.json:1:"), finished.err.find("b.json:4:"));
}

TEST(Print, AClosedStandardOutputEndsItQuietly) {
    const Workplace place;
    place.write("a.json", hello);
    place.write("err", "");
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"tree", "a.json"}, {"render", "a.json", "-o", "-"}, {"--help"}}) {
        SCOPED_TRACE(words.front());
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        ::close(ends[0]);
        std::FILE* const err = std::fopen(place.path("err").c_str(), "w");
        const int status = waitFor(place.start(words, -1, ends[1], ::fileno(err)));
        std::fclose(err);
        ::close(ends[1]);
        EXPECT_EQ(status, 1);
        EXPECT_EQ(place.read("err"), "");
    }
}

TEST(Print, AFullStandardOutputIsAFailure) {
    const Workplace place;
    place.write("a.json", hello);
    std::FILE* const full = std::fopen("/dev/full", "w");
    if (!full) GTEST_SKIP() << "no /dev/full here";
    EXPECT_EQ(waitFor(place.start({"tree", "a.json"}, -1, ::fileno(full))), 1);
    std::fclose(full);
}

TEST(Print, Explanations) {
    const Workplace place;
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "hstack", "spacing": 0, "children": [
        {"type": "text", "content": "Hello"}, {"type": "spacer"}]}, "other": {"type": "spacer"}}})");
    const Finished outline = place.run({"explain", "a.json"});
    EXPECT_EQ(outline.status, 0);
    EXPECT_EQ(outline.err, "");
    EXPECT_THAT(outline.out,
                HasSubstr("HStack          338 × 20.33 at 0, 68.83    around 2 children; center in the widget"));
    EXPECT_THAT(outline.out, HasSubstr("\n  Text \"Hello\"  "));
    EXPECT_TRUE(outline.out.ends_with("(nodes.main.children[1])\n"));

    const Finished one = place.run({"explain", "a.json", "nodes.main.children[0]"});
    EXPECT_THAT(one.out, HasSubstr("Text \"Hello\" from nodes.main.children[0]\n  The HStack at nodes.main offers its "
                                   "width before anything that yields."));
    EXPECT_THAT(one.out, HasSubstr("\n  It lies at 0, 68.83: first in the HStack"));

    const Finished json = place.run({"explain", "a.json", "nodes.main.children", "--format", "json"});
    const JSON parsed = JSON::parse(json.out);
    ASSERT_TRUE(parsed.find("views"));
    EXPECT_EQ(parsed.find("views")->find(std::int64_t{1})->find("view")->description(), "Spacer");
    EXPECT_EQ(parsed.find("views")->find(std::int64_t{2}), nullptr);
}

TEST(Print, ExplanationsOfNothing) {
    const Workplace place;
    place.write("a.json", R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}, "other": {"type": "spacer"}}})");
    const struct {
        const char* why;
        const char* path;
        const char* message;
    } rows[] = {
        {"misspelt", "nodes.mian", "there is nothing at nodes.mian in the document; did you mean 'nodes.main'?"},
        {"far away", "elsewhere", "there is nothing at elsewhere in the document"},
        {"not drawn", "nodes.other", "no view comes from nodes.other: it is not drawn"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const Finished finished = place.run({"explain", "a.json", row.path, "--errors", "json"});
        EXPECT_EQ(finished.status, 1);
        EXPECT_EQ(finished.out, "");
        EXPECT_EQ(errorText(finished, "kind"), "Explain");
        EXPECT_EQ(errorText(finished, "message"), row.message);
    }
}

}  // namespace
}  // namespace tavrin::cli
