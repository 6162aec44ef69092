// SPDX-License-Identifier: MIT
#include "tavrin/json/json_difference.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

/// "PATH: BEFORE -> AFTER" for each difference, where "-" is nothing; "more" where there are more; "skipped" where a
/// member "at" differs, which is skipped.
std::vector<std::string> found(std::string_view before, std::string_view after, std::size_t most = 100) {
    const JSON one = JSON::parse(before);
    const JSON other = JSON::parse(after);
    const auto text = [](const JSON* value) { return value ? value->description() : "-"; };
    std::vector<std::string> lines;
    const JSONDifferences all = differences(one, other, most, [](std::string_view key) { return key == "at"; });
    for (const JSONDifference& difference : all.first)
        lines.push_back(toText(difference.path) + ": " + text(difference.before) + " -> " + text(difference.after));
    if (all.areMore) lines.emplace_back("more");
    if (all.areSkipped) lines.emplace_back("skipped");
    return lines;
}

TEST(JSONDifference, IsFoundByKeysAndElements) {
    const struct {
        const char* why;
        const char* before;
        const char* after;
        std::vector<std::string> lines;
    } rows[] = {
        {"the same", R"({"a": [1, {"b": null}]})", R"({"a": [1, {"b": null}]})", {}},
        {"another order of keys", R"({"a": 1, "b": 2})", R"({"b": 2, "a": 1})", {}},
        {"a scalar", R"({"a": 1})", R"({"a": 2})", {"a: 1 -> 2"}},
        {"another type that reads alike", R"({"a": 1})", R"({"a": "1"})", {"a: 1 -> 1"}},
        {"the root", "true", "false", {": true -> false"}},
        {"nested", R"({"a": [{"b": 1}, {"b": 2}]})", R"({"a": [{"b": 1}, {"b": 3}]})", {"a[1].b: 2 -> 3"}},
        {"a list of scalars is one value", R"({"a": [1, 2]})", R"({"a": [1, 3]})", {"a: [1,2] -> [1,3]"}},
        {"an element more", R"([{}])", R"([{}, {}])", {"[1]: - -> {}"}},
        {"an element less", R"([{}, {}])", R"([{}])", {"[1]: {} -> -"}},
        {"keys", R"({"a": 1, "b": 1})", R"({"c": 1, "b": 1})", {"a: 1 -> -", "c: - -> 1"}},
        {"an object for a list", R"({"a": {}})", R"({"a": []})", {"a: {} -> []"}},
        {"an element more in front",
         R"([{"b": 1}, {"b": 2}])",
         R"([{"b": 0}, {"b": 1}, {"b": 2}])",
         {"[0]: - -> {\"b\":0}"}},
        {"an element more in between",
         R"([{"b": 1}, {"b": 3}])",
         R"([{"b": 1}, {"b": 2}, {"b": 3}])",
         {"[1]: - -> {\"b\":2}"}},
        {"an element less in front",
         R"([{"b": 0}, {"b": 1}, {"b": 1}])",
         R"([{"b": 1}, {"b": 1}])",
         {"[0]: {\"b\":0} -> -"}},
        {"one more of the same",
         R"([{"b": 1}, {"b": 1}])",
         R"([{"b": 1}, {"b": 1}, {"b": 1}])",
         {"[2]: - -> {\"b\":1}"}},
        {"an element more behind one that differs",
         R"([{"b": 1}, {"b": 2}, {"b": 3}])",
         R"([{"b": 1}, {"b": 0}, {"b": 4}, {"b": 3}])",
         {"[1].b: 2 -> 0", "[2]: - -> {\"b\":4}"}},
        {"elements more in two lists",
         R"([{"c": [{"b": 1}]}, {}])",
         R"([true, {"c": [{"b": 0}, {"b": 1}]}, {}])",
         {R"([0]: {"c":[{"b":1}]} -> true)", R"([1]: - -> {"c":[{"b":0},{"b":1}]})"}},
        {"a list more in a list",
         R"({"c": [{"d": [{"b": 1}]}, {}]})",
         R"({"c": [{"d": [{"b": 0}, {"b": 1}]}, {}]})",
         {"c[0].d[0]: - -> {\"b\":0}"}},
        {"a member that is skipped", R"({"at": 1})", R"({"at": 2})", {"skipped"}},
        {"one that is missing", R"({"at": [1]})", R"({})", {"skipped"}},
        {"one that is new", R"({})", R"({"a": 1, "at": {}})", {"a: - -> 1", "skipped"}},
        {"one in elements that are the same",
         R"([{"b": 1, "at": 1}])",
         R"([{"b": 0}, {"b": 1, "at": 2}])",
         {"[0]: - -> {\"b\":0}", "skipped"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(found(row.before, row.after), row.lines);
    }
}

TEST(JSONDifference, IsNotListedBeyondTheMost) {
    const char* const before = R"({"at": 1, "a": 1, "b": 1, "c": [{}]})";
    const char* const after = R"({"at": 2, "a": 2, "b": 2, "c": [{}, {}]})";
    const std::vector<std::string> all{"a: 1 -> 2", "b: 1 -> 2", "c[1]: - -> {}", "skipped"};
    EXPECT_EQ(found(before, after, 3), all) << "what is skipped does not count";
    EXPECT_EQ(found(before, after, 2), (std::vector<std::string>{all[0], all[1], "more", "skipped"}));
    EXPECT_EQ(found(before, after, 0), (std::vector<std::string>{"more", "skipped"}));
    EXPECT_EQ(found(before, before, 0), std::vector<std::string>{});
}

TEST(JSONDifference, IsFoundInDeepListsOfOtherLengths) {
    constexpr int depth = 1000;
    std::string before = R"([{"b": 1}])";
    std::string after = R"([{"b": 1}, {"b": 2}])";
    std::string way = "[1]";
    for (int i = 0; i < depth; ++i) {
        before = "[" + before + ", {}]";
        after = "[" + after + ", {}, {}]";
    }
    EXPECT_EQ(found(before, after).size(), 100U + 1);
}

}  // namespace
}  // namespace tavrin
