// SPDX-License-Identifier: MIT
#include "tavrin/json/json_scan.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

constexpr std::size_t depth = 64;

/// Every event with what is written there.
std::string eventsOf(std::string_view text) {
    constexpr std::string_view names[] = {"object", "array", "end", "key", "scalar"};
    std::string events;
    for (JSONScanner scanner(text); scanner.next();)
        events.append(names[static_cast<std::size_t>(scanner.event())]).append(" ").append(scanner.raw()).append("\n");
    return events;
}

TEST(JSONScanner, GoesFromEventToEvent) {
    EXPECT_EQ(eventsOf(" 5 "), "scalar 5\n");
    EXPECT_EQ(eventsOf(R"({ "a\u00e9" : [ -1.5e3 , "b,]" ,{}], "":null })"),
              "object {\nkey \"a\\u00e9\"\narray [\nscalar -1.5e3\nscalar \"b,]\"\nobject {\nend }\nend ]\n"
              "key \"\"\nscalar null\nend }\n");
}

TEST(JSONScanner, GoesAsFarAsTheTextIsJSON) {
    EXPECT_EQ(eventsOf(R"([1, {"a" 2}])"), "array [\nscalar 1\nobject {\nkey \"a\"\n");
    EXPECT_EQ(eventsOf("[1,]"), "array [\nscalar 1\n");
    EXPECT_EQ(eventsOf(""), "");
}

TEST(JSONScanner, ReadsStrings) {
    const struct {
        std::string_view raw;
        std::string_view meaning;
    } rows[] = {
        {R"("")", ""},
        {R"("plain é")", "plain é"},
        {R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
        {R"("\u0000\u00e9\u20AC!")", std::string_view("\0é€!", 7)},
        {R"("\uD83D\ude00.")", "\U0001F600."},
    };
    for (const auto& row : rows) EXPECT_EQ(JSONScanner::unquoted(row.raw), row.meaning) << row.raw;
}

TEST(SyntaxFault, AcceptsJSON) {
    const struct {
        const char* why;
        std::string_view text;
    } rows[] = {
        {"scalar at the root", "true"},
        {"blanks around", " \t\r\n[ ] \n"},
        {"empty containers", R"({"a":{},"b":[]})"},
        {"everything", R"({"a": [1, -0, 0.5, 1e2, 1E+2, 1.5e-3, true, false, null, "x"], "b": {"c": "d"}})"},
        {"duplicate keys", R"({"a":1,"a":2})"},
        {"empty key", R"({"":1})"},
        {"all escapes", R"("\"\\\/\b\f\n\r\t\u00e9")"},
        {"surrogate pair", R"("\uD83D\ude00")"},
        {"escaped NUL", R"("\u0000")"},
        {"non-ASCII and DEL", "\"\u00e9\U0001F600\x7f\u2028\""},
        {"too small a number is 0", "1e-400"},
        {"many digits", "123456789012345678901234567890.5"},
        {"as deep as allowed", "[[[[]]]]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto fault = findSyntaxFault(row.text, 4);
        EXPECT_EQ(fault, std::nullopt) << (fault ? fault->message : "");
    }
}

TEST(SyntaxFault, TellsWhereAndWhy) {
    const std::string_view end = "unexpected end of the document, ";
    const struct {
        const char* why;
        std::string_view text;
        std::size_t offset;
        std::string message;
    } rows[] = {
        {"empty", "", 0, "the document is empty"},
        {"blank", " \n", 2, "the document is empty"},
        {"byte order mark", "\xEF\xBB\xBF{}", 0, "unexpected byte order mark at the start of the document"},
        {"UTF-16", std::string_view("\xFF\xFE{\0}\0", 6), 0, "expected a value, found a byte that is not UTF-8 (0xFF)"},
        {"comma missing in an object", R"({"a":1 "b":2})", 7, "expected ',' or '}' after a value, found '\"'"},
        {"comma missing in an array", "[1 x]", 3, "expected ',' or ']' after a value, found 'x'"},
        {"wrong bracket", "[1}", 2, "expected ',' or ']' after a value, found '}'"},
        {"colon missing", R"({"a" 1})", 5, "expected ':' after a key, found '1'"},
        {"key without quotes", "{a:1}", 1, "expected a key in quotes or '}', found 'a'"},
        {"single quotes", "{'a':1}", 1, "expected a key in quotes or '}', found '''"},
        {"comma before a brace", R"({"a":1,})", 7, "expected a key in quotes after ',', found '}'"},
        {"comma before a bracket", "[1,]", 3, "expected a value, found ']'"},
        {"comma at the start", "[,1]", 1, "expected a value, found ','"},
        {"two values", "1 2", 2, "expected the end of the document, found '2'"},
        {"bracket too many", "[]]", 2, "expected the end of the document, found ']'"},
        {"comment", "[1] // one", 4, "expected the end of the document, found '/'"},
        {"unknown word", "[True]", 1, "expected a value, found 'True'"},
        {"word goes on", "[nullx]", 1, "expected a value, found 'nullx'"},
        {"endless word", std::string_view("aaaaaaaaaaaaaaaaaaaaaaaaa"), 0,
         "expected a value, found 'aaaaaaaaaaaaaaaaaaaa…'"},
        {"control character between values", "[\x01]", 1, "expected a value, found the character U+0001"},
        {"blank that JSON does not know", "[\u00a0]", 1, "expected a value, found '\u00a0'"},
        {"NUL behind", std::string_view("1\0", 2), 1, "expected the end of the document, found the character U+0000"},
        {"plus", "+1", 0, "expected a value, found '+'"},
        {"point first", ".5", 0, "expected a value, found '.'"},
        {"leading zero", "[012]", 1, "a number must not start with 0"},
        {"leading zero behind a sign", "-01", 0, "a number must not start with 0"},
        {"sign alone", "[-]", 2, "expected a digit after '-', found ']'"},
        {"point last", "[1.]", 3, "expected a digit after '.', found ']'"},
        {"exponent without digits", "[1e+]", 4, "expected a digit in an exponent, found ']'"},
        {"hexadecimal", "0x1", 1, "expected the end of the document, found 'x1'"},
        {"too large", "[1e400]", 1, "number is too large"},
        {"too large and negative", "-1e400", 0, "number is too large"},
        {"infinity", "-Infinity", 1, "expected a digit after '-', found 'Infinity'"},
        {"string without end", R"({"a": "b)", 6, "unterminated string"},
        {"string with an escaped end", R"("a\")", 0, "unterminated string"},
        {"string over two lines", "[\"a\n\"]", 3, "unterminated string: a line ends inside it"},
        {"tab in a string", "\"\t\"", 1, "a string must not hold the character U+0009 unescaped"},
        {"NUL in a string", std::string_view("\"\0\"", 3), 1, "a string must not hold the character U+0000 unescaped"},
        {"unknown escape", R"("\x41")", 2, "expected one of \"\\/bfnrtu after '\\', found 'x41'"},
        {"escape at the end", "\"\\", 2, "unexpected end of the document after '\\'"},
        {"short escape", R"("\u12")", 5, "expected four hexadecimal digits after '\\u', found '\"'"},
        {"half of a pair", R"("a\ud800b")", 2, "unpaired surrogate \\uD800"},
        {"second half first", R"("\uDE00\uD83D")", 1, "unpaired surrogate \\uDE00"},
        {"two first halves", R"("\uD83D\uD83D")", 1, "unpaired surrogate \\uD83D"},
        {"a pair cut off", R"("\uD83D\u")", 9, "expected four hexadecimal digits after '\\u', found '\"'"},
        {"not UTF-8", "\"\xc3(\"", 1, "a string must not hold a byte that is not UTF-8 (0xC3)"},
        {"overlong", "\"\xc0\x80\"", 1, "a string must not hold a byte that is not UTF-8 (0xC0)"},
        {"encoded surrogate", "\"\xed\xa0\x80\"", 1, "a string must not hold a byte that is not UTF-8 (0xED)"},
        {"too deep", "[[[[[]]]]]", 4, "nested deeper than 4 levels"},
        {"end in an object", R"({"a":1)", 6, std::string(end) + "expected ',' or '}' after a value"},
        {"end behind a colon", R"({"a":)", 5, std::string(end) + "expected a value"},
        {"end behind a key", R"({"a")", 4, std::string(end) + "expected ':' after a key"},
        {"end behind a brace", "{", 1, std::string(end) + "expected a key in quotes or '}'"},
        {"end behind a bracket", "[", 1, std::string(end) + "expected a value"},
        {"end in a number", "1e", 2, std::string(end) + "expected a digit in an exponent"},
        {"end in a word", "[tru", 1, "expected a value, found 'tru'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto fault = findSyntaxFault(row.text, 4);
        ASSERT_TRUE(fault.has_value());
        EXPECT_EQ(fault->offset, row.offset);
        EXPECT_EQ(fault->message, row.message);
    }
}

TEST(SyntaxFault, RefusesEveryPartOfADocument) {
    const std::string_view text = "{\"a\": [1.5e3, {\"b\": \"\\u00e9\u20ac\"}, null], \"c\": {\"d\": []}}";
    ASSERT_EQ(findSyntaxFault(text, depth), std::nullopt);
    for (std::size_t length = 0; length < text.size(); ++length) {
        const auto fault = findSyntaxFault(text.substr(0, length), depth);
        ASSERT_TRUE(fault.has_value()) << length;
        EXPECT_LE(fault->offset, length);
    }
}

TEST(SyntaxFault, TakesAnyDepthAndLength) {
    const std::size_t levels = 1'000'000;
    EXPECT_EQ(findSyntaxFault(std::string(levels, '[') + std::string(levels, ']'), levels), std::nullopt);
    EXPECT_EQ(findSyntaxFault(std::string(levels, '['), depth).value().offset, depth);
    EXPECT_EQ(findSyntaxFault("\"" + std::string(levels, 'x'), depth).value().offset, 0U);
    EXPECT_EQ(findSyntaxFault("[]", 0).value().message, "nested deeper than 0 levels");
}

}  // namespace
}  // namespace tavrin
