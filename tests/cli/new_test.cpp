// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program.h"

namespace tavrin::cli {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::vector<std::string> templatesOf(const Workplace& place) {
    std::vector<std::string> names;
    for (const std::string& line : linesOf(place.run({"new", "--list"}).out))
        names.push_back(line.substr(0, line.find(' ')));
    return names;
}

TEST(New, MakesADocumentAModelAndSettings) {
    const Workplace place;
    const Finished finished = place.run({"new", "widgets/habits"});
    EXPECT_EQ(finished.status, 0) << finished.err;
    EXPECT_THAT(place.files(),
                ElementsAre("widgets/habits.json", "widgets/habits.model.json", "widgets/habits.widget.toml"));
    EXPECT_THAT(finished.out, AllOf(HasSubstr("made widgets/habits.json\n"), HasSubstr("habits.widget.toml\n")));
    EXPECT_EQ(place.run({"new", "steps.json"}).status, 0);
    EXPECT_TRUE(place.has("steps.json"));
}

TEST(New, NothingIsWrongWithAnyTemplate) {
    const Workplace place;
    const std::vector<std::string> names = templatesOf(place);
    EXPECT_THAT(names, SizeIs(6));
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        EXPECT_EQ(place.run({"new", name, "--template", name}).status, 0);
        const Finished check = place.run({"check", name + ".json", "--strict", "--notes"});
        EXPECT_EQ(check.status, 0);
        EXPECT_THAT(check.err, IsEmpty());
        const Finished drawn =
            place.run({"render", name + ".json", "-o", "out", "--families", "meant", "--appearances", "all"});
        EXPECT_EQ(drawn.status, 0);
        EXPECT_THAT(drawn.err, IsEmpty());
    }
}

TEST(New, OverwritesNothing) {
    for (const char* there : {"a.json", "a.model.json", "a.widget.toml"}) {
        SCOPED_TRACE(there);
        const Workplace place;
        place.write(there, "mine");
        const Finished finished = place.run({"new", "a"});
        EXPECT_EQ(finished.status, 1);
        EXPECT_THAT(finished.err, HasSubstr("'" + std::string(there) + "' is there already"));
        EXPECT_THAT(place.files(), ElementsAre(there));
        EXPECT_EQ(place.read(there), "mine");
    }
}

TEST(New, FollowsNoLink) {
    const Workplace place;
    std::filesystem::create_symlink("nowhere.json", place.path("a.widget.toml"));
    const Finished finished = place.run({"new", "a"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.err, HasSubstr("'a.widget.toml' is there already"));
    EXPECT_FALSE(place.has("nowhere.json"));
    EXPECT_FALSE(place.has("a.json"));
    EXPECT_FALSE(place.has("a.model.json"));
}

TEST(New, SaysWhatItTakes) {
    const struct {
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {{"new"}, "what is it called?"},
        {{"new", "a", "b"}, "one name"},
        {{"new", "a", "--template", "rings"}, "did you mean 'ring'?"},
        {{"new", "a/"}, "a widget has a name"},
        {{"new", "a.model.json"}, "which would make it a model"},
        {{"new", "--list", "a"}, "takes nothing else"},
    };
    const Workplace place;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        const Finished finished = place.run(row.words);
        EXPECT_EQ(finished.status, 2);
        EXPECT_THAT(finished.err, HasSubstr(row.message));
    }
    EXPECT_THAT(place.files(), IsEmpty());
}

}  // namespace
}  // namespace tavrin::cli
