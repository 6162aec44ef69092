// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/itemizer.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/strings/utf8.h"
#include "tavrin/platform/text/font_faces.h"

namespace tavrin::text {
namespace {

Paragraph paragraphOf(std::u32string characters) {
    Paragraph paragraph{std::move(characters), {}};
    for (const char32_t c : paragraph.characters) appendUtf8(paragraph.utf8, c);
    return paragraph;
}

TEST(Itemizer, LongParagraphsBreakWhereTheyDoAtOnce) {
    const struct {
        const char* why;
        std::u32string_view alphabet;
    } rows[] = {
        {"words", U"abcdefgh    ,.-'\"()/1"},
        {"ideographs", U"\u6C49\u5B57\u4E2D\u6587\u3002\uFF0C\u300C\u300D\u3042\u30FC"},
        {"marks and joiners", U"aab \u0301\u0316\u200D\U0001F468\U0001F469\uFE0F"},
        {"hangul", U"\uAC00\uB098\u1100\u1161\u11A8 "},
        {"Thai", U"\u0E20\u0E32\u0E29\u0E32\u0E44\u0E17\u0E22\u0E01\u0E34\u0E19 "},
        {"one flag behind the other", U"\U0001F1E9\U0001F1EA"},
        {"Arabic and numbers", U"\u0627\u0644\u0633\u064B 12,%"},
    };
    FontFaces faces(FontLibrary::system()->catalog());
    FontChooser fonts(faces);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::mt19937 random(7);
        std::u32string characters = U"x";
        while (characters.size() < 30'000) characters += row.alphabet[random() % row.alphabet.size()];
        const Paragraph paragraph = paragraphOf(std::move(characters));
        const ItemizedParagraph itemized = itemize(paragraph, Font::Weight::regular, fonts);
        std::vector<PangoLogAttr> atOnce(paragraph.characters.size() + 1);
        pango_get_log_attrs(paragraph.utf8.data(), static_cast<int>(paragraph.utf8.size()), -1,
                            pango_language_from_string("en"), atOnce.data(), static_cast<int>(atOnce.size()));
        std::size_t different = 0;
        for (std::size_t at = 0; at < atOnce.size(); ++at)
            different += itemized.beginsGrapheme(at) != (atOnce[at].is_cursor_position != 0) ||
                         itemized.mayBreakBefore(at) != (atOnce[at].is_line_break != 0);
        EXPECT_EQ(different, 0U);
    }
}

}  // namespace
}  // namespace tavrin::text
