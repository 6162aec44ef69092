// SPDX-License-Identifier: MIT
#include "tavrin/json/json_place.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(TextPlace, CountsLinesAndColumns) {
    const struct {
        const char* why;
        std::string_view text;
        std::size_t offset;
        TextPlace place;
        std::string_view line;
    } rows[] = {
        {"empty text", "", 0, {0, 1, 1}, ""},
        {"start", "ab\ncd", 0, {0, 1, 1}, "ab"},
        {"line end belongs to its line", "ab\ncd", 2, {2, 1, 3}, "ab"},
        {"second line", "ab\ncd", 4, {4, 2, 2}, "cd"},
        {"end of the text", "ab\ncd", 5, {5, 2, 3}, "cd"},
        {"behind the end", "ab\ncd", 99, {5, 2, 3}, "cd"},
        {"behind the last line end", "ab\n", 3, {3, 2, 1}, ""},
        {"empty lines", "\n\n\nx", 3, {3, 4, 1}, "x"},
        {"code points, not bytes", "\u00e9\U0001F600x", 6, {6, 1, 3}, "\u00e9\U0001F600x"},
        {"carriage returns belong to the line end", "ab\r\ncd\r\n", 5, {5, 2, 2}, "cd"},
        {"a carriage return alone ends no line", "a\rb", 2, {2, 1, 3}, "a\rb"},
        {"bytes that are no UTF-8", "\xff\xff x", 3, {3, 1, 4}, "\xff\xff x"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(placeAt(row.text, row.offset), row.place);
        EXPECT_EQ(lineAt(row.text, row.offset), row.line);
    }
}

TEST(Locate, FollowsAPath) {
    const std::string_view text =
        R"( {"nodes": {"main": {"type": "vstack", "children": [ 1, {"type": "text"}, [[2]] ]}},
"a\u002eb": true, "\ud83d\ude00\n\"": 5, "twice": 6, "twice": 7, "x": "}],{\"", "": 8, "last":9})";
    const auto value = [&](const CodingPath& path) -> std::optional<std::string_view> {
        const auto at = locate(text, path);
        if (!at) return std::nullopt;
        return text.substr(*at, std::min<std::size_t>(3, text.size() - *at));
    };
    const struct {
        const char* why;
        CodingPath path;
        std::optional<std::string_view> start;
    } rows[] = {
        {"the root behind blanks", {}, R"({"n)"},
        {"an object", {"nodes"}, R"({"m)"},
        {"a string in it", {"nodes", "main", "type"}, R"("vs)"},
        {"first element", {"nodes", "main", "children", 0U}, "1, "},
        {"behind a scalar", {"nodes", "main", "children", 1U, "type"}, R"("te)"},
        {"behind an object", {"nodes", "main", "children", 2U, 0U, 0U}, "2]]"},
        {"key with an escape", {"a.b"}, "tru"},
        {"key with a surrogate pair", {"\U0001F600\n\""}, "5, "},
        {"the first of two", {"twice"}, "6, "},
        {"behind brackets in a string", {"last"}, "9}"},
        {"empty key", {""}, "8, "},
        {"no such key", {"nodes", "other"}, {}},
        {"keys are not looked for deeper", {"type"}, {}},
        {"values are no keys", {"nodes", "main", "vstack"}, {}},
        {"index behind the end", {"nodes", "main", "children", 3U}, {}},
        {"index into an object", {"nodes", 0U}, {}},
        {"key of an array", {"nodes", "main", "children", "0"}, {}},
        {"key of a string", {"x", "y"}, {}},
        {"element of a number", {"last", 0U}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(value(row.path), row.start);
    }
}

TEST(Locate, SurvivesTextThatIsNoJSON) {
    const std::string_view text = "{\"a\\u12\": [1, \"x\\\", {\"b\": \"\\ud83d\\u\"}], \"c\": 1}";
    for (std::size_t length = 0; length <= text.size(); ++length)
        for (const CodingPath& path : {CodingPath{"c"}, CodingPath{"a", 1U, "b"}, CodingPath{3U}})
            EXPECT_LE(locate(text.substr(0, length), path).value_or(0), length);
    EXPECT_EQ(locate("[1,,2]", {2U}), std::nullopt);
    EXPECT_EQ(locate("[]", {0U}), std::nullopt);
}

TEST(Locate, TakesAnyDepth) {
    const std::size_t levels = 1'000'000;
    const std::string text = "[" + std::string(levels, '[') + std::string(levels, ']') + ", 7]";
    EXPECT_EQ(locate(text, {1U}), text.size() - 2);
}

TEST(CodingPath, IsWrittenAsPeopleDo) {
    const struct {
        const char* why;
        CodingPath path;
        const char* text;
    } rows[] = {
        {"the root", {}, ""},
        {"keys and indices", {"nodes", "main", "children", 1U, "type"}, "nodes.main.children[1].type"},
        {"index first", {0U, "a"}, "[0].a"},
        {"plain characters", {"a_b-9"}, "a_b-9"},
        {"other keys in quotes", {"nodes", "my \"node\"", "a.b", ""}, R"(nodes["my \"node\""]["a.b"][""])"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(toText(row.path), row.text);
    }
}

}  // namespace
}  // namespace tavrin
