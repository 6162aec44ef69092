// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/paragraphs.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin::text {
namespace {

std::vector<std::u32string> paragraphsOf(std::string_view text) {
    std::vector<std::u32string> result;
    ParagraphReader reader(text);
    for (Paragraph paragraph; reader.next(paragraph);) result.push_back(paragraph.characters);
    return result;
}

TEST(Paragraphs, AreSplitAtLineBreaks) {
    using namespace std::string_view_literals;
    const struct {
        const char* why;
        std::string_view text;
        std::vector<std::u32string> paragraphs;
    } rows[] = {
        {"an empty text is one paragraph", "", {U""}},
        {"line feed", "a\nb", {U"a", U"b"}},
        {"a break at the end begins an empty paragraph", "a\n", {U"a", U""}},
        {"CR LF is one break", "a\r\nb", {U"a", U"b"}},
        {"LF CR is two", "a\n\rb", {U"a", U"", U"b"}},
        {"carriage return", "a\rb", {U"a", U"b"}},
        {"vertical tab and form feed", "a\vb\fc", {U"a", U"b", U"c"}},
        {"line and paragraph separator", "a\u2028b\u2029c", {U"a", U"b", U"c"}},
        {"next line", "a\u0085b", {U"a", U"b"}},
        {"a tab stays", "a\tb", {U"a\tb"}},
        {"NUL and other controls are never seen", "a\0b\x1B\x7F"sv, {U"a\u2060b\u2060\u2060"}},
        {"invalid bytes", "a\xFF\xC3(", {U"a\uFFFD\uFFFD("}},
        {"a surrogate", "\xED\xA0\x80", {U"\uFFFD\uFFFD\uFFFD"}},
        {"a sequence that is cut off", "\xF0\x9F\x98", {U"\uFFFD"}},
        {"beyond the first plane", "\U0001F600", {U"\U0001F600"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(paragraphsOf(row.text), row.paragraphs);
    }
}

TEST(Paragraphs, KeepValidUtf8) {
    ParagraphReader reader("na\u00EFve \xFF \U0001F600");
    Paragraph paragraph;
    ASSERT_TRUE(reader.next(paragraph));
    EXPECT_EQ(paragraph.utf8, "na\u00EFve \uFFFD \U0001F600");
    EXPECT_FALSE(reader.next(paragraph));
}

}  // namespace
}  // namespace tavrin::text
