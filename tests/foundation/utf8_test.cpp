// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/utf8.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(Utf8, TellsTextFromBytes) {
    const struct {
        const char* why;
        std::string_view text;
        bool valid;
        std::size_t count;
        const char* sanitized;
    } rows[] = {
        {"empty", "", true, 0, ""},
        {"one to four bytes", "a\u00e9\u20ac\U0001F600", true, 4, "a\u00e9\u20ac\U0001F600"},
        {"NUL is a character", std::string_view("\0", 1), true, 1, nullptr},
        {"around the surrogates", "\xed\x9f\xbf\xee\x80\x80", true, 2, "\xed\x9f\xbf\xee\x80\x80"},
        {"the last code point", "\xf4\x8f\xbf\xbf", true, 1, "\xf4\x8f\xbf\xbf"},
        {"above the last code point", "\xf4\x90\x80\x80", false, 4, "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"surrogate", "\xed\xa0\x80", false, 3, "\uFFFD\uFFFD\uFFFD"},
        {"overlong slash", "\xc0\xaf", false, 2, "\uFFFD\uFFFD"},
        {"overlong in three bytes", "\xe0\x9f\xbf", false, 3, "\uFFFD\uFFFD\uFFFD"},
        {"overlong in four bytes", "\xf0\x8f\xbf\xbf", false, 4, "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"continuation alone", "\x80", false, 1, "\uFFFD"},
        {"a sequence cut off at the end is one error", "a\xf0\x9f\x98", false, 2, "a\uFFFD"},
        {"a sequence cut off by a letter", "\xe2\x82z", false, 2, "\uFFFDz"},
        {"bytes that never occur", "\xfe\xff", false, 2, "\uFFFD\uFFFD"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(isValidUtf8(row.text), row.valid);
        EXPECT_EQ(countCodePoints(row.text), row.count);
        EXPECT_EQ(sanitizedUtf8(row.text), row.sanitized ? std::string_view(row.sanitized) : row.text);
    }
}

TEST(Utf8, DecodesWhatItEncodes) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (codePoint == 0xD800) codePoint = 0xE000;
        std::string text;
        appendUtf8(text, codePoint);
        const Utf8Step step = decodeUtf8(text, 0);
        ASSERT_EQ(step.codePoint, codePoint);
        ASSERT_EQ(step.length, text.size());
    }
}

}  // namespace
}  // namespace tavrin
