// SPDX-License-Identifier: MIT
#include "tavrin/json/json.h"

#include <string>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(JSON, LooksUpMembersAndElements) {
    const JSON json = JSON::parse(R"({"a": {"b": [10, 20, {"c": null}]}, "": 1, "s": "text"})");
    ASSERT_NE(json.find("a"), nullptr);
    const JSON* list = json.find("a")->find("b");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->find(1)->description(), "20");
    EXPECT_EQ(list->find(2)->find("c")->description(), "null") << "null is a value that is there";
    EXPECT_EQ(json.find("")->description(), "1") << "an empty key is a key";

    const struct {
        const char* why;
        const JSON* found;
    } nothing[] = {
        {"no such key", json.find("x")},
        {"keys are case-sensitive", json.find("A")},
        {"an index into a dictionary", json.find(0)},
        {"a key into an array", list->find("0")},
        {"past the end", list->find(3)},
        {"before the start", list->find(-1)},
        {"the smallest index", list->find(std::numeric_limits<std::int64_t>::min())},
        {"the largest index", list->find(std::numeric_limits<std::int64_t>::max())},
        {"a key into a string", json.find("s")->find("x")},
        {"an index into a string", json.find("s")->find(0)},
        {"a key into null", list->find(2)->find("c")->find("x")},
    };
    for (const auto& row : nothing) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.found, nullptr);
    }
}

// Small dictionaries are walked, large ones are searched.
TEST(JSON, FindsEveryMemberOfDictionariesOfAnySize) {
    for (const int size : {0, 1, 15, 16, 17, 18, 100, 5000}) {
        SCOPED_TRACE(size);
        std::string text = "{";
        for (int i = 0; i < size; ++i)
            text += (i > 0 ? "," : "") + ("\"k" + std::to_string(i * 7919 % 65537)) + "\":" + std::to_string(i);
        const JSON json = JSON::parse(text + "}");
        for (int i = 0; i < size; ++i) {
            const JSON* found = json.find("k" + std::to_string(i * 7919 % 65537));
            ASSERT_NE(found, nullptr) << i;
            EXPECT_EQ(found->description(), std::to_string(i));
        }
        for (const char* missing : {"", "k", "k00", "zzz", "a"}) EXPECT_EQ(json.find(missing), nullptr) << missing;
    }
}

TEST(JSON, TheFirstOfEqualKeysHolds) {
    for (const int others : {0, 100}) {
        SCOPED_TRACE(others);
        std::string text = R"({"b": "first b", "a": "first a")";
        for (int i = 0; i < others; ++i) text += ",\"k" + std::to_string(i) + "\":0";
        const JSON json = JSON::parse(text + R"(, "a": "second a", "b": "second b", "a": "third a"})");
        EXPECT_EQ(json.find("a")->description(), "first a");
        EXPECT_EQ(json.find("b")->description(), "first b");
    }
}

TEST(JSON, HasATextForm) {
    const struct {
        const char* why;
        const char* text;
        const char* description;
    } rows[] = {
        {"a string as it stands", R"("a\"b")", "a\"b"},
        {"true", "true", "true"},
        {"false", "false", "false"},
        {"null", "null", "null"},
        {"an integer", "-12", "-12"},
        {"a whole number is an integer", "3.0", "3"},
        {"an exponent", "1e2", "100"},
        {"zero below zero is zero", "-0.0", "0"},
        {"a fraction", "2.50", "2.5"},
        {"a small fraction", "0.00001", "1e-05"},
        {"an unsigned integer", "18446744073709551615", "18446744073709551615"},
        {"beyond 64 bits", "18446744073709551616", "1.8446744073709552e+19"},
        {"below 64 bits", "-9223372036854775809", "-9.223372036854776e+18"},
        {"the smallest integer", "-9223372036854775808", "-9223372036854775808"},
        {"an array", R"([1, "a", [true, null], 2.5])", R"([1,"a",[true,null],2.5])"},
        {"a dictionary in its order", R"({"z": 1, "a": {"b": []}})", R"({"z":1,"a":{"b":[]}})"},
        {"strings inside are quoted", R"(["a\"b"])", R"(["a\"b"])"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(JSON::parse(row.text).description(), row.description);
    }
}

TEST(JSON, IsMadeInCode) {
    const struct {
        const char* why;
        JSON json;
        const char* description;
    } rows[] = {
        {"nothing is null", {}, "null"},
        {"a literal", "text", "text"},
        {"a string", std::string("text"), "text"},
        {"a boolean is no number", true, "true"},
        {"an integer", 3, "3"},
        {"a wide integer", std::int64_t{5'000'000'000}, "5000000000"},
        {"an unsigned integer", std::uint64_t{18446744073709551615u}, "18446744073709551615"},
        {"a small unsigned integer", std::uint8_t{200}, "200"},
        {"a double is not cut off", 2.75, "2.75"},
        {"a float", 0.5f, "0.5"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.json.description(), row.description);
    }
    const JSON list = JSON::Value(JSONArray{1, "b", true});
    EXPECT_EQ(list.description(), R"([1,"b",true])");
    const JSON dictionary = JSON::Value(JSONObject({{"k", list}, {"n", {}}}));
    EXPECT_EQ(dictionary.description(), R"({"k":[1,"b",true],"n":null})");
}

TEST(JSON, DeepAndLongValuesLiveAndDie) {
    std::string deep;
    for (int i = 0; i < 1024; ++i) deep += R"({"a":[)";
    for (int i = 0; i < 1024; ++i) deep += "]}";
    const JSON nested = JSON::parse(deep);
    EXPECT_EQ(nested.description(), deep);
    const JSON copy = nested;
    EXPECT_EQ(copy.description(), deep);

    std::string wide = "[0";
    for (int i = 1; i < 100'000; ++i) wide += ",0";
    EXPECT_EQ(JSON::parse(wide + "]").find(99'999)->description(), "0");
}

TEST(JSON, RefusesWhatIsNotJSON) { EXPECT_THROW(static_cast<void>(JSON::parse("{")), DecodingError); }

}  // namespace
}  // namespace tavrin
