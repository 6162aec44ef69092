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
    EXPECT_LT(finished.err.find("c.json: error"), finished.err.find("b.json:4:"));
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

}  // namespace
}  // namespace tavrin::cli
