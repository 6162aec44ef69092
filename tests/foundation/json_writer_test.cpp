// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/json_writer.h"

#include <functional>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/precondition.h"

namespace tavrin {
namespace {

std::string compact(const std::function<void(JSONWriter&)>& write) {
    JSONWriter writer(JSONWriter::Style::compact);
    write(writer);
    return std::move(writer).text();
}

std::string pretty(const std::function<void(JSONWriter&)>& write) {
    JSONWriter writer(JSONWriter::Style::pretty);
    write(writer);
    return std::move(writer).text();
}

TEST(JSONWriter, WritesNumbers) {
    const struct {
        const char* why;
        double number;
        const char* text;
    } rows[] = {
        {"whole", 338, "338"},
        {"fraction", -2.5, "-2.5"},
        {"fewest digits", 0.1, "0.1"},
        {"large", 1e20, "1e+20"},
        {"small", 1e-5, "1e-05"},
        {"negative zero", -0.0, "-0"},
        {"a float is widened", 0.1F, "0.10000000149011612"},
        {"infinite", std::numeric_limits<double>::infinity(), "\"infinity\""},
        {"negative infinite", -std::numeric_limits<double>::infinity(), "\"-infinity\""},
        {"not a number", std::numeric_limits<double>::quiet_NaN(), "\"nan\""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(compact([&](JSONWriter& w) { w.value(row.number); }), row.text);
    }
}

TEST(JSONWriter, WritesScalars) {
    const std::string text = compact([](JSONWriter& w) {
        w.beginArray().value(true).value(false).value(nullptr).value("text").value(std::string("more"));
        w.value(-1).value(0.1F).value(std::numeric_limits<std::int64_t>::min());
        w.value(std::numeric_limits<std::uint64_t>::max()).endArray();
    });
    EXPECT_EQ(text,
              "[true,false,null,\"text\",\"more\",-1,0.10000000149011612,-9223372036854775808,"
              "18446744073709551615]");
}

TEST(JSONWriter, EscapesStrings) {
    const struct {
        const char* why;
        std::string_view string;
        const char* text;
    } rows[] = {
        {"empty", "", "\"\""},
        {"quote and backslash", "a\"b\\c", "\"a\\\"b\\\\c\""},
        {"named control characters", "\b\f\n\r\t", "\"\\b\\f\\n\\r\\t\""},
        {"other control characters", std::string_view("\0\x1f", 2), "\"\\u0000\\u001f\""},
        {"slash and DEL stay", "/\x7f", "\"/\x7f\""},
        {"non-ASCII stays", "21\u00b0 \U0001F600", "\"21\u00b0 \U0001F600\""},
        {"bytes that are no UTF-8", "a\xff\xc3(", "\"a\uFFFD\uFFFD(\""},
        {"a sequence cut off by a quote", "\xe2\x82\"", "\"\uFFFD\\\"\""},
        {"a surrogate", "\xed\xa0\x80", "\"\uFFFD\uFFFD\uFFFD\""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(compact([&](JSONWriter& w) { w.value(row.string); }), row.text);
        EXPECT_EQ(compact([&](JSONWriter& w) { w.beginObject().key(row.string).value(1).endObject(); }),
                  "{" + std::string(row.text) + ":1}");
    }
}

void writeDocument(JSONWriter& w) {
    w.beginObject();
    w.key("view").value("VStack");
    w.key("frame").beginArray().value(0).value(0).value(338).value(158).endArray();
    w.key("children").beginArray();
    w.beginObject().key("view").value("Circle").endObject();
    w.beginObject().endObject();
    w.endArray();
    w.key("edges").beginArray().endArray();
    w.endObject();
}

TEST(JSONWriter, WritesOneLine) {
    EXPECT_EQ(compact(writeDocument),
              R"({"view":"VStack","frame":[0,0,338,158],"children":[{"view":"Circle"},{}],"edges":[]})");
}

TEST(JSONWriter, WritesLinesForPeople) {
    EXPECT_EQ(pretty(writeDocument), R"({
  "view": "VStack",
  "frame": [0, 0, 338, 158],
  "children": [
    {
      "view": "Circle"
    },
    {}
  ],
  "edges": []
})");
}

TEST(JSONWriter, KeepsLongArraysOnManyLines) {
    const std::string word(40, 'x');
    EXPECT_EQ(pretty([&](JSONWriter& w) { w.beginArray().value(word).value(word).endArray(); }),
              "[\n  \"" + word + "\",\n  \"" + word + "\"\n]");
    EXPECT_EQ(pretty([&](JSONWriter& w) { w.beginArray().value(word).value("a,\n  b").endArray(); }),
              "[\"" + word + "\", \"a,\\n  b\"]");
    EXPECT_EQ(pretty([&](JSONWriter& w) { w.beginArray().value("a, ").value("  b").endArray(); }), R"(["a, ", "  b"])");
}

TEST(JSONWriter, RefusesWhatIsNoJSON) {
    const struct {
        const char* why;
        void (*write)(JSONWriter&);
    } rows[] = {
        {"two values", [](JSONWriter& w) { w.value(1).value(2); }},
        {"a value without key", [](JSONWriter& w) { w.beginObject().value(1); }},
        {"a key in an array", [](JSONWriter& w) { w.beginArray().key("a"); }},
        {"a key at the root", [](JSONWriter& w) { w.key("a"); }},
        {"two keys", [](JSONWriter& w) { w.beginObject().key("a").key("b"); }},
        {"a key without value", [](JSONWriter& w) { w.beginObject().key("a").endObject(); }},
        {"another end", [](JSONWriter& w) { w.beginObject().endArray(); }},
        {"an end without begin", [](JSONWriter& w) { w.endArray(); }},
    };
    const auto before = setPreconditionHandler([](std::string_view m) { throw std::logic_error(std::string(m)); });
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_THROW(compact(row.write), std::logic_error);
    }
    setPreconditionHandler(before);
}

}  // namespace
}  // namespace tavrin
