// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/bidi.h"

#include <random>
#include <string>

#include <fribidi.h>
#include <gtest/gtest.h>

namespace tavrin::text {
namespace {

TEST(Bidi, LevelsFollowTheFirstStrongCharacter) {
    const struct {
        const char* why;
        std::u32string_view text;
        std::uint8_t base;
        std::vector<std::uint8_t> levels;
    } rows[] = {
        {"Latin needs no levels", U"abc", 0, {}},           {"Hebrew", U"\u05D0\u05D1", 1, {1, 1}},
        {"Hebrew in Latin", U"a \u05D0", 0, {0, 0, 1}},     {"a number in Hebrew", U"\u05D0 12", 1, {1, 1, 2, 2}},
        {"an isolate", U"a\u2067b\u2069", 0, {0, 0, 2, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const BidiLevels result = bidiLevels(row.text);
        EXPECT_EQ(result.base, row.base);
        EXPECT_EQ(result.levels, row.levels);
    }
}

std::u32string repeated(std::u32string_view what, std::size_t length) {
    std::u32string text;
    while (text.size() < length) text += what;
    return text;
}

/// What FriBidi makes of all at once.
std::vector<std::uint8_t> levelsAtOnce(const std::u32string& text) {
    const std::vector<FriBidiChar> characters(text.begin(), text.end());
    const auto length = static_cast<FriBidiStrIndex>(text.size());
    std::vector<FriBidiCharType> types(text.size());
    std::vector<FriBidiBracketType> brackets(text.size());
    std::vector<FriBidiLevel> levels(text.size());
    fribidi_get_bidi_types(characters.data(), length, types.data());
    fribidi_get_bracket_types(characters.data(), length, types.data(), brackets.data());
    FriBidiParType direction = FRIBIDI_PAR_ON;
    EXPECT_NE(fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), length, &direction, levels.data()), 0);
    return {levels.begin(), levels.end()};
}

TEST(Bidi, PiecesAreWhatTheWholeIs) {
    const struct {
        const char* why;
        std::vector<std::u32string_view> words;
        std::size_t length;
        bool inPieces;
    } rows[] = {
        {"brackets",
         {U"a", U"\u05D0", U"\u0627", U"12", U", ", U"(\u05D0)", U"(b [\u05D0])", U"[3]", U"()"},
         9'000,
         true},
        {"a long text", {U"a", U"\u05D0", U"\u0627", U"12", U", ", U" ", U"$", U"\u0300", U"\t"}, 99'000, true},
        {"embeddings",
         {U"a", U"\u05D0", U"1,2 ", U"\u202A \u05D0 (1) \u202C", U"\u202Ba\u202E!b\u202C \u202C"},
         99'000,
         true},
        {"isolates",
         {U"a", U"\u05D0", U"1, ", U"(", U")", U"\u2066", U"\u2067", U"\u2068", U"\u2069", U"\u202B"},
         400,
         false},
        {"isolates 125 deep and deeper", {U"\u2067", U"\u2067", U"\u2067a", U"\u2069"}, 400, false},
    };
    for (const auto& row : rows)
        for (unsigned seed = 0; seed < 20; ++seed) {
            SCOPED_TRACE(std::string(row.why) + ", " + std::to_string(seed));
            std::mt19937 random(seed);
            std::u32string text = U"\u05D0";
            while (text.size() < row.length) text += row.words[random() % row.words.size()];
            const BidiLevels result = bidiLevels(text);
            EXPECT_TRUE(result.levels == levelsAtOnce(text));
            EXPECT_EQ(result.pieces > 1, row.inPieces) << result.pieces;
        }
}

TEST(Bidi, NoPieceHasMoreIsolatesAndBracketsThanFriBidiIsQuickWith) {
    const std::u32string_view rows[] = {U"\u2066", U"\u2067", U"\u2068", U"\u2068\u2069", U"\u2067a\u2069",
                                        U"()",     U"(",      U")",      U"(\u05D0)"};
    for (const std::u32string_view row : rows)
        for (const std::size_t length : {32'000U, 64'000U, 128'000U}) {
            const std::u32string text = U"\u05D0" + repeated(row, length);
            const BidiLevels result = bidiLevels(text);
            EXPECT_EQ(result.levels.size(), text.size());
            EXPECT_GE(result.pieces, length / 1536);
            EXPECT_LE(result.pieces, length / 256);
        }
    EXPECT_EQ(bidiLevels(repeated(U"\u05D0\u05D1\u05D2 (abc), 12. ", 2'000)).pieces, 1U) << "what is usual";
}

TEST(Bidi, PiecesAreReordered) {
    const struct {
        const char* why;
        std::vector<std::uint8_t> levels;
        std::vector<std::uint32_t> order;
    } rows[] = {
        {"nothing", {}, {}},
        {"left to right", {0, 0, 0}, {0, 1, 2}},
        {"right to left", {1, 1, 1}, {2, 1, 0}},
        {"a number inside right-to-left text", {1, 2, 1}, {2, 1, 0}},
        {"several pieces of a number keep their order", {1, 2, 2, 1}, {3, 1, 2, 0}},
        {"right-to-left text inside left-to-right text", {0, 1, 1, 0}, {0, 2, 1, 3}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(visualOrder(row.levels), row.order);
    }
}

}  // namespace
}  // namespace tavrin::text
