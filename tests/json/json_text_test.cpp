// SPDX-License-Identifier: MIT
#include "tavrin/json/json_text.h"

#include <cmath>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/coding_path.h"

namespace tavrin {
namespace {

std::optional<DecodingError> errorOf(std::string_view text) {
    try {
        const JSONText parsed(text);
    } catch (const DecodingError& error) {
        return error;
    }
    return std::nullopt;
}

std::string nested(std::size_t levels, std::string_view open, std::string_view inner, std::string_view close) {
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) text += open;
    text += inner;
    for (std::size_t i = 0; i < levels; ++i) text += close;
    return text;
}

TEST(JSONText, TellsKinds) {
    const struct {
        const char* why;
        std::string_view text;
        JSONKind kind;
    } rows[] = {
        {"null", "null", JSONKind::null},
        {"true", "true", JSONKind::boolean},
        {"false", " false ", JSONKind::boolean},
        {"a string", R"("1")", JSONKind::string},
        {"an array", "[]", JSONKind::array},
        {"an object", "{}", JSONKind::object},
        {"digits", "3", JSONKind::integer},
        {"a whole number with a point", "3.0", JSONKind::integer},
        {"a whole number with an exponent", "1e2", JSONKind::integer},
        {"an exponent takes the fraction away", "1.25e2", JSONKind::integer},
        {"a negative exponent may leave a whole number", "300e-2", JSONKind::integer},
        {"zero below zero", "-0", JSONKind::integer},
        {"zero below zero with a point", "-0.0", JSONKind::integer},
        {"too small to be told from zero", "1e-400", JSONKind::integer},
        {"a fraction", "2.5", JSONKind::floating},
        {"the largest signed integer", "9223372036854775807", JSONKind::integer},
        {"one more is unsigned", "9223372036854775808", JSONKind::unsigned_},
        {"the same with a point", "9223372036854775808.0", JSONKind::unsigned_},
        {"the largest unsigned integer", "18446744073709551615", JSONKind::unsigned_},
        {"one more is no integer", "18446744073709551616", JSONKind::floating},
        {"the smallest signed integer", "-9223372036854775808", JSONKind::integer},
        {"one less is no integer", "-9223372036854775809", JSONKind::floating},
        {"far beyond", "123456789012345678901234567890", JSONKind::floating},
        {"far below", "-123456789012345678901234567890", JSONKind::floating},
        {"a large exponent", "1e300", JSONKind::floating},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(JSONText(row.text).root().kind(), row.kind) << row.text;
    }
}

TEST(JSONText, ReadsNumbers) {
    EXPECT_EQ(JSONText("-9223372036854775808").root().integer(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(JSONText("9223372036854775807").root().integer(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(JSONText("18446744073709551615").root().unsignedInteger(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(JSONText("-3.0").root().integer(), -3);
    EXPECT_EQ(JSONText("1e2").root().integer(), 100);
    EXPECT_EQ(JSONText("-0.0").root().integer(), 0);
    EXPECT_EQ(JSONText("9223372036854775808.0").root().unsignedInteger(), std::uint64_t{1} << 63);
    EXPECT_EQ(JSONText("-9223372036854775809").root().floating(), -0x1p63);
    EXPECT_EQ(JSONText("123456789012345678901234567890").root().floating(), 123456789012345678901234567890.0);
    EXPECT_EQ(JSONText("5e-324").root().floating(), 5e-324);
}

TEST(JSONText, WideNumbersLeaveTheirNeighboursAsTheyAre) {
    const JSONText text(R"([99999999999999999999, 9223372036854775807, -9223372036854775808, 18446744073709551615,)"
                        R"( "99999999999999999999 \" 99999999999999999999", 1234567890123456789, 1.25e1])");
    std::vector<JSONElement> elements;
    for (JSONElement::Walk walk(text.root()); walk.next();) elements.push_back(walk.value());
    ASSERT_EQ(elements.size(), 7u);
    EXPECT_EQ(elements[0].kind(), JSONKind::floating);
    EXPECT_EQ(elements[0].floating(), 1e20);
    ASSERT_EQ(elements[1].kind(), JSONKind::integer);
    EXPECT_EQ(elements[1].integer(), std::numeric_limits<std::int64_t>::max());
    ASSERT_EQ(elements[2].kind(), JSONKind::integer);
    EXPECT_EQ(elements[2].integer(), std::numeric_limits<std::int64_t>::min());
    ASSERT_EQ(elements[3].kind(), JSONKind::unsigned_);
    EXPECT_EQ(elements[3].unsignedInteger(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(elements[4].string(), R"(99999999999999999999 " 99999999999999999999)");
    ASSERT_EQ(elements[5].kind(), JSONKind::integer);
    EXPECT_EQ(elements[5].integer(), 1234567890123456789);
    EXPECT_EQ(elements[6].floating(), 12.5);
}

TEST(JSONText, ReadsStrings) {
    const struct {
        const char* why;
        std::string_view text;
        std::string_view string;
    } rows[] = {
        {"empty", R"("")", ""},
        {"escapes", R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
        {"a code point by number", R"("\u00e9")", "\u00e9"},
        {"a pair of surrogates", R"("\ud83d\uDE00")", "\U0001F600"},
        {"a zero byte", R"("a\u0000b")", std::string_view("a\0b", 3)},
        {"UTF-8 as it stands", "\"\u00e9\U0001F600\"", "\u00e9\U0001F600"},
        {"a non-character is a character here", "\"\xEF\xBF\xBF\"", "\xEF\xBF\xBF"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const JSONText parsed(row.text);
        EXPECT_EQ(parsed.root().string(), row.string);
    }
}

TEST(JSONText, RefusesWhatIsNotJSON) {
    const struct {
        const char* why;
        std::string_view text;
        std::size_t offset;
    } rows[] = {
        {"nothing", "", 0},
        {"blanks only", " \n", 2},
        {"an end too early", R"({"a":)", 5},
        {"two values", "1 2", 2},
        {"a byte order mark", "\xEF\xBB\xBF{}", 0},
        {"a comma too many in an array", "[1,]", 3},
        {"a comma too many in an object", R"({"a":1,})", 7},
        {"single quotes", "{'a':1}", 1},
        {"a comment", "[1 /*x*/]", 3},
        {"a leading zero", "01", 0},
        {"no digit before the point", ".5", 0},
        {"no digit after the point", "5.", 2},
        {"a plus sign", "+1", 0},
        {"a minus sign alone", "-", 1},
        {"an empty exponent", "1e", 2},
        {"not a number", "NaN", 0},
        {"infinity", "-Infinity", 1},
        {"a hexadecimal number", "0x10", 1},
        {"a number that overflows", "1e400", 0},
        {"words are in lower case", "True", 0},
        {"a line break in a string", "\"a\nb\"", 2},
        {"a control character in a string", "\"a\x01\"", 2},
        {"an unknown escape", R"("\x")", 2},
        {"an open string", R"("abc)", 0},
        {"a byte that is not UTF-8", "\"\xff\"", 1},
        {"a sequence cut off", "\"\xe2\x82\"", 1},
        {"an overlong form", "\"\xc0\xaf\"", 1},
        {"a surrogate in UTF-8", "\"\xed\xa0\x80\"", 1},
        {"beyond the last code point", "\"\xf4\x90\x80\x80\"", 1},
        {"not UTF-8 outside a string", "[\xff]", 1},
        {"a high surrogate alone", R"("\ud800")", 1},
        {"a high surrogate before a letter", R"("\ud800x")", 1},
        {"a high surrogate before another character", R"("\ud800\u0041")", 1},
        {"two high surrogates", R"("\ud800\ud800")", 1},
        {"a low surrogate alone", R"("\udc00")", 1},
        {"a low surrogate in a key", R"({"\udfff":1})", 2},
        {"a key without quotes", "{a:1}", 1},
        {"no colon", R"({"a" 1})", 5},
        {"brackets that do not match", "[1}", 2},
        {"a zero byte", std::string_view("[1\0]", 4), 2},
        {"a zero byte behind the text", std::string_view("1\0", 2), 1},
        {"UTF-16", std::string_view("[\0]\0", 4), 1},
        {"a wide number and then a fault", "[99999999999999999999, 01]", 23},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::optional<DecodingError> error = errorOf(row.text);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind, DecodingError::Kind::dataCorrupted);
        EXPECT_TRUE(error->codingPath.empty());
        EXPECT_TRUE(error->message.starts_with("The given data was not valid JSON: ")) << error->message;
        EXPECT_EQ(error->offset, row.offset) << error->message;
    }
}

TEST(JSONText, BoundsNesting) {
    const struct {
        const char* why;
        std::string text;
        bool isRead;
    } rows[] = {
        {"arrays as deep as allowed", nested(JSONText::maximumDepth, "[", "1", "]"), true},
        {"one deeper", nested(JSONText::maximumDepth + 1, "[", "1", "]"), false},
        {"an empty array does not count", nested(JSONText::maximumDepth + 1, "[", "", "]"), true},
        {"two deeper, the innermost empty", nested(JSONText::maximumDepth + 2, "[", "", "]"), false},
        {"objects as deep as allowed", nested(JSONText::maximumDepth, R"({"a":)", "1", "}"), true},
        {"objects one deeper", nested(JSONText::maximumDepth + 1, R"({"a":)", "1", "}"), false},
        {"an empty object does not count", nested(JSONText::maximumDepth, R"({"a":)", "{}", "}"), true},
        {"a hostile text", nested(1'000'000, "[", "", "]"), false},
        {"a hostile text without ends", std::string(1'000'000, '['), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::optional<DecodingError> error = errorOf(row.text);
        EXPECT_EQ(!error, row.isRead);
        if (error) {
            EXPECT_EQ(error->message, "The given data was not valid JSON: nested deeper than 2048 levels");
        }
    }
}

TEST(JSONText, FindsTheFirstOfEqualKeys) {
    const JSONText text(R"({"b": 1, "a": 2, "b": 3, "c": {"d": 4}, "a": 5})");
    static constexpr std::array<std::string_view, 4> keys{"a", "b", "c", "d"};
    const std::array<JSONElement, 4> found = text.root().findMembers<keys>();
    EXPECT_EQ(found[0].integer(), 2);
    EXPECT_EQ(found[1].integer(), 1);
    EXPECT_EQ(found[2].kind(), JSONKind::object);
    EXPECT_FALSE(found[3].exists()) << "a key of an inner object is not one of this one's";
}

TEST(JSONText, WalksInOrder) {
    const JSONText text(R"({"z": [1, {"x": [2, 3]}, "s"], "a": {}, "": null})");
    std::vector<std::string> keys;
    std::vector<JSONKind> kinds;
    for (JSONElement::Walk walk(text.root()); walk.next();) {
        keys.emplace_back(walk.key());
        kinds.push_back(walk.value().kind());
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"z", "a", ""}));
    EXPECT_EQ(kinds, (std::vector{JSONKind::array, JSONKind::object, JSONKind::null}));
    EXPECT_EQ(text.root().size(), 3u);
    const JSONText none("[]");
    JSONElement::Walk walk(none.root());
    EXPECT_FALSE(walk.next());
}

TEST(JSONText, ReadsLongStrings) {
    const std::string longest(1 << 20, 'x');
    const JSONText text("\"" + longest + "\"");
    EXPECT_EQ(text.root().string(), longest);
}

TEST(JSONText, TextsLiveSideBySide) {
    const JSONText first(R"(["first"])");
    const JSONText second(R"(["second"])");
    JSONElement::Walk firstWalk(first.root());
    JSONElement::Walk secondWalk(second.root());
    ASSERT_TRUE(firstWalk.next());
    ASSERT_TRUE(secondWalk.next());
    EXPECT_EQ(firstWalk.value().string(), "first");
    EXPECT_EQ(secondWalk.value().string(), "second");
}

TEST(JSONText, AFaultDoesNotHarmTheNextText) {
    EXPECT_TRUE(errorOf("[1,"));
    EXPECT_TRUE(errorOf(nested(3000, "[", "", "]")));
    EXPECT_EQ(JSONText("[1]").root().size(), 1u);
}

TEST(JSONTextThread, ThreadsParseAtOnce) {
    std::vector<std::thread> threads;
    std::array<int, 4> sums{};
    for (int& sum : sums) {
        threads.emplace_back([&sum] {
            for (int i = 0; i < 200; ++i) {
                const JSONText text("[" + std::to_string(i) + "]");
                JSONElement::Walk walk(text.root());
                walk.next();
                sum += static_cast<int>(walk.value().integer());
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const int sum : sums) EXPECT_EQ(sum, 199 * 200 / 2);
}

TEST(CodingPath, IsWrittenAsPeopleWriteIt) {
    const struct {
        const char* why;
        CodingPath path;
        const char* text;
    } rows[] = {
        {"the root", {}, ""},
        {"keys", {"nodes", "main"}, "nodes.main"},
        {"an index", {"children", std::size_t{1}, "type"}, "children[1].type"},
        {"an index first", {std::size_t{0}, "type"}, "[0].type"},
        {"two indices", {std::size_t{0}, std::size_t{12}}, "[0][12]"},
        {"a blank in a key", {"nodes", "my node", "x"}, R"(nodes["my node"].x)"},
        {"a quoted key first", {"a.b"}, R"(["a.b"])"},
        {"an empty key", {"nodes", ""}, R"(nodes[""])"},
        {"a key that needs escapes", {"a\"b\n"}, R"(["a\"b\n"])"},
        {"letters outside ASCII", {"\u00e9"}, "[\"\u00e9\"]"},
        {"digits, dashes and underscores are plain", {"a-1_B"}, "a-1_B"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(toText(row.path), row.text);
    }
}

}  // namespace
}  // namespace tavrin
