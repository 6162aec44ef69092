// SPDX-License-Identifier: MIT
#include "tavrin/json/json_outline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

/// "path = text" of every value, in pre-order.
std::vector<std::string> linesOf(const JSONOutline& outline) {
    std::vector<std::string> lines;
    for (JSONOutline::Index i = 0; i < outline.values().size(); ++i)
        lines.push_back(toText(outline.path(i)) + " = " + std::string(outline.raw(i)));
    return lines;
}

TEST(JSONOutline, KnowsWhereEveryValueIsWritten) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(linesOf(JSONOutline(" 5 ")), Lines{" = 5"});
    EXPECT_EQ(linesOf(JSONOutline(R"({ "a" : [ 1 , "b,]" ,{}], "c\"d":null })")),
              (Lines{R"( = { "a" : [ 1 , "b,]" ,{}], "c\"d":null })", R"(a = [ 1 , "b,]" ,{}])", "a[0] = 1",
                     R"(a[1] = "b,]")", "a[2] = {}", R"(["c\"d"] = null)"}));
    EXPECT_EQ(linesOf(JSONOutline("[[],[[true]]]")),
              (Lines{" = [[],[[true]]]", "[0] = []", "[1] = [[true]]", "[1][0] = [true]", "[1][0][0] = true"}));
}

TEST(JSONOutline, FindsTheNearestValueOnAWay) {
    const JSONOutline outline(R"({"a": {"b": [1, 2]}, "a": 3, "\u0063": 4})");
    const struct {
        CodingPath path;
        std::string_view raw;
    } rows[] = {
        {{"a", "b", std::size_t{1}}, "2"},
        {{"a", "b", std::size_t{7}}, "[1, 2]"},
        {{"a", "x", "y"}, R"({"b": [1, 2]})"},
        {{"c"}, "4"},
    };
    for (const auto& row : rows) EXPECT_EQ(outline.raw(outline.nearest(row.path)), row.raw);
    EXPECT_EQ(outline.nearest({"d"}), 0u);
    EXPECT_EQ(outline.string(outline.nearest({"c"})), "");
}

TEST(JSONOutline, SurvivesWhatIsNoJSON) {
    for (const char* text :
         {"", " ", "]", "{\"a\"", "{\"a\":", "[[", "\"", "\"\\", "{]}", "1 2", ",", "{\"a\" \"b\" \"c\"}", "{1:2}"})
        EXPECT_GE(linesOf(JSONOutline(text)).size(), 1u);
}

}  // namespace
}  // namespace tavrin
