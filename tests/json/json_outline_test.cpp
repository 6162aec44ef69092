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
    OutlinePaths paths(outline);
    for (const auto& row : rows) EXPECT_EQ(outline.raw(paths.nearest(row.path)), row.raw);
    EXPECT_EQ(paths.nearest({"d"}), 0u);
    EXPECT_EQ(outline.string(paths.nearest({"c"})), "");
}

/// A text whose root has so many children, called "k0", "k1" … in an object, each an object with one member, and at
/// last a duplicate of the first.
std::string textOf(bool isObject, std::size_t children) {
    std::string text(isObject ? "{" : "[");
    const auto add = [&](std::size_t i) {
        if (isObject) text += "\"k" + std::to_string(i) + "\":";
        text += "{\"a\":" + std::to_string(i) + "},";
    };
    for (std::size_t i = 0; i < children; ++i) add(i);
    add(0);
    text.back() = isObject ? '}' : ']';
    return text;
}

/// Follows the paths to all the children's members; how many children that took to look at.
std::size_t costOfAllPaths(bool isObject, std::size_t children) {
    const std::string text = textOf(isObject, children);
    const JSONOutline outline(text);
    OutlinePaths paths(outline);
    for (std::size_t i = 0; i < children; ++i) {
        const CodingKey child = isObject ? CodingKey("k" + std::to_string(i)) : CodingKey(i);
        const JSONOutline::Index found = paths.nearest({child, "a"});
        EXPECT_EQ(outline.raw(found), std::to_string(i));
        EXPECT_EQ(outline[outline[found].parent].position, i) << "the first of duplicate keys";
    }
    EXPECT_EQ(paths.nearest({"k", "a"}), 0u);
    EXPECT_EQ(paths.nearest({children + 1, "a"}), 0u);
    return paths.visited();
}

TEST(OutlinePaths, CostNoMoreThanTheTextHowManyEverThereAre) {
    for (const bool isObject : {false, true}) {
        SCOPED_TRACE(isObject ? "members" : "elements");
        std::size_t before = costOfAllPaths(isObject, 8);
        for (std::size_t children = 16; children <= 4096; children *= 2) {
            const std::size_t cost = costOfAllPaths(isObject, children);
            EXPECT_LE(cost, 24 * children) << children;
            if (children > 64) {
                EXPECT_LE(cost, before * 5 / 2) << children;  // twice as many paths cost twice as much
            }
            before = cost;
        }
    }
}

TEST(JSONOutline, SurvivesWhatIsNoJSON) {
    for (const char* text :
         {"", " ", "]", "{\"a\"", "{\"a\":", "[[", "\"", "\"\\", "{]}", "1 2", ",", "{\"a\" \"b\" \"c\"}", "{1:2}"})
        EXPECT_GE(linesOf(JSONOutline(text)).size(), 1u);
}

}  // namespace
}  // namespace tavrin
