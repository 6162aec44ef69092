// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/graphemes.h"

#include <string>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::vector<std::string> charactersOf(std::string_view text) {
    std::vector<std::string> characters;
    for (GraphemeWalk walk(text); walk.next();) {
        EXPECT_EQ(text.substr(walk.offset(), walk.character().size()), walk.character());
        characters.emplace_back(walk.character());
    }
    return characters;
}

TEST(Graphemes, AreWhatReadersSee) {
    const struct {
        const char* why;
        std::string_view text;
        std::vector<std::string> characters;
    } rows[] = {
        {"nothing", "", {}},
        {"ASCII", "a-1", {"a", "-", "1"}},
        {"CR LF is one", "a\r\nb", {"a", "\r\n", "b"}},
        {"each of them alone, too", "\n\r\r", {"\n", "\r", "\r"}},
        {"a letter outside ASCII", "é1", {"é", "1"}},
        {"an accent belongs to what stands before", "1\u0301-\u0308", {"1\u0301", "-\u0308"}},
        {"at the start it stands alone", "\u0301a", {"\u0301", "a"}},
        {"a control has no accents", "\n\u0301", {"\n", "\u0301"}},
        {"a family of emoji", "👨‍👩‍👧!", {"👨‍👩‍👧", "!"}},
        {"an emoji with a tone", "👍🏽👍", {"👍🏽", "👍"}},
        {"flags are pairs", "🇩🇪🇫🇷🇮", {"🇩🇪", "🇫🇷", "🇮"}},
        {"a keycap", "1\uFE0F\u20E32", {"1\uFE0F\u20E3", "2"}},
        {"jamo make a syllable", "\u1112\u1161\u11ABa", {"\u1112\u1161\u11AB", "a"}},
        {"a sign that stands before", "\u06001-", {"\u06001", "-"}},
        {"zeros are characters", "\0é\0"sv, {"\0"s, "é", "\0"s}},
        {"broken UTF-8", "a\xFFé\xC3", {"a", "\xFF", "é", "\xC3"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(charactersOf(row.text), row.characters);
    }
}

TEST(Graphemes, MayBeOfAnyLengthAndNumber) {
    std::string accents = "é";
    for (int i = 0; i < 10'000; ++i) accents += "\u0301";
    EXPECT_EQ(charactersOf(accents + "b"), (std::vector<std::string>{accents, "b"}));

    std::string flags;
    for (int i = 0; i < 1000; ++i) flags += "🇩🇪";
    EXPECT_EQ(charactersOf(flags), std::vector<std::string>(1000, "🇩🇪")) << "wherever a look ahead ends";

    for (std::size_t before = 55; before < 70; ++before) {
        const std::string text = std::string(before, 'a') + "👨‍👩‍👧" + "é";
        EXPECT_EQ(charactersOf(text).size(), before + 2) << before;
    }
}

}  // namespace
}  // namespace tavrin
