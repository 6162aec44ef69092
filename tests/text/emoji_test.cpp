// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/emoji.h"

#include <gtest/gtest.h>

namespace tavrin::text {
namespace {

TEST(Emoji, AreToldFromText) {
    const struct {
        const char* why;
        std::u32string_view grapheme;
        bool emoji;
    } rows[] = {
        {"a face", U"\U0001F600", true},
        {"a letter", U"a", false},
        {"the sun is text by itself", U"\u2600", false},
        {"the sun with the emoji selector", U"\u2600\uFE0F", true},
        {"the sun with the text selector", U"\u2600\uFE0E", false},
        {"an umbrella with rain is emoji by itself", U"\u2614", true},
        {"the text selector forbids it", U"\u2614\uFE0E", false},
        {"a watch", U"\u231A", true},
        {"just before the watch", U"\u2319", false},
        {"a cloud with rain is known only as a picture", U"\U0001F327", true},
        {"a skin tone", U"\u261D\U0001F3FD", true},
        {"a family", U"\U0001F468\u200D\U0001F469\u200D\U0001F467", true},
        {"a joined sequence without selectors", U"\u26F9\u200D\u2642", true},
        {"joined letters", U"\u0646\u200D", false},
        {"a flag", U"\U0001F1EF\U0001F1F5", true},
        {"a keycap", U"1\uFE0F\u20E3", true},
        {"a keycap without selector", U"#\u20E3", true},
        {"a digit", U"1", false},
        {"a digit with the emoji selector alone", U"1\uFE0F", false},
        {"the copyright sign", U"\u00A9", false},
        {"nothing", U"", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(wantsEmoji(row.grapheme), row.emoji);
    }
}

}  // namespace
}  // namespace tavrin::text
