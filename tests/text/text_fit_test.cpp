// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/text/font_metrics.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::text {
namespace {

TextBlock fit(std::string_view text, const TextRoom& room, Font font = Font::system(17)) {
    auto& engine = TextEngine::ofThisThread();
    return engine.fit(engine.shape(text, font), room);
}

TextRoom room(std::optional<double> width, std::optional<std::int64_t> limit = {}, std::optional<double> height = {}) {
    TextRoom result;
    result.width = width;
    result.lineLimit = limit;
    result.height = height;
    return result;
}

/// What stands in each line, without the white space that hangs.
std::vector<std::string> linesOf(const TextBlock& block) {
    std::vector<std::string> lines;
    const ShapedText& text = *block.lines()->text;
    for (const auto& line : block.lines()->broken->lines) {
        std::string content;
        for (std::uint32_t i = line.unitBegin; i < line.unitEnd; ++i)
            content += text.utf8.substr(text.units[i].byte, text.endByte(i) - text.units[i].byte);
        lines.push_back(content + (line.ellipsis ? "…" : ""));
    }
    return lines;
}

double naturalWidth(std::string_view text, Font font = Font::system(17)) {
    TextRoom unrounded;
    unrounded.scale = 0;
    return fit(text, unrounded, font).size().width;
}

TEST(TextFit, HeightIsWholeLinesInWholePixels) {
    const struct {
        const char* why;
        std::string text;
        double size;
        double scale;
        double height;
    } rows[] = {
        {"one line", "a", 17, 3, 61.0 / 3},
        {"two lines", "a\nb", 17, 3, 122.0 / 3},
        {"three lines", "a\nb\nc", 17, 3, 61},
        {"30 points", "a", 30, 3, 36},
        {"scale 2", "a", 17, 2, 20.5},
        {"an empty text is one line", "", 17, 3, 61.0 / 3},
        {"a break at the end begins a line", "a\n", 17, 3, 122.0 / 3},
        {"another font's metrics do not count", "ไทย", 17, 3, 61.0 / 3},
        {"nor do emoji", "😀", 17, 3, 61.0 / 3},
        {"not positive", "a", 0, 3, 0},
        {"negative", "a", -4, 3, 0},
        {"not a number", "a", std::nan(""), 3, 0},
        {"infinite", "a", std::numeric_limits<double>::infinity(), 3, 0},
        {"enormous sizes are limited", "a", 1e300, 1, std::ceil(10000 * 1.193359)},
        {"a scale of nonsense rounds nothing", "a", 10, -1, 11.93359},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        TextRoom given;
        given.scale = row.scale;
        EXPECT_NEAR(fit(row.text, given, Font::system(row.size)).size().height, row.height, 1e-9);
    }
}

TEST(TextFit, WidthIsInWholePixelsAndNeverMoreThanProposed) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        TextRoom given;
        given.scale = scale;
        const double width = fit("Reykjavik", given).size().width;
        EXPECT_NEAR(width * scale, std::round(width * scale), 1e-9);
        EXPECT_GE(width, naturalWidth("Reykjavik"));
        EXPECT_LT(width, naturalWidth("Reykjavik") + 1 / scale);
    }
    EXPECT_EQ(fit("", {}).size().width, 0);
    EXPECT_EQ(fit("W", room(3)).size().width, 3);
    EXPECT_EQ(fit("W", room(0)).size().width, 0);
    EXPECT_EQ(fit("W", room(-5)).size().width, 0);
}

TEST(TextFit, LeadingLiesBetweenLines) {
    const struct {
        const char* why;
        std::string text;
        Font font;
        std::optional<double> given;
        double height;
        std::size_t lines;
    } rows[] = {
        {"none around one line", "a", Font::body(), {}, 61.0 / 3, 1},
        {"22 from line to line", "a\nb\nc", Font::body(), {}, 193.0 / 3, 3},
        {"none in a font of its own size", "a\nb\nc", Font::system(17), {}, 61, 3},
        {"two lines fit with one leading", "a\nb\nc", Font::body(), 42.29, 127.0 / 3, 2},
        {"but not in less", "a\nb\nc", Font::body(), 42.28, 61.0 / 3, 1},
        {"nonsense is none", "a\nb", {.size = 17, .leading = -5}, {}, 122.0 / 3, 2},
        {"nonsense is none", "a\nb", {.size = 17, .leading = std::nan("")}, {}, 122.0 / 3, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const TextBlock block = fit(row.text, room({}, {}, row.given), row.font);
        EXPECT_NEAR(block.size().height, row.height, 1e-9);
        EXPECT_EQ(block.lineCount(), row.lines);
    }
}

TEST(TextFit, TheFirstBaselineLiesOnAPixel) {
    for (const auto& [size, scale, baseline] : {std::tuple{17.0, 3.0, 49 / 3.0}, std::tuple{17.0, 1.0, 16.0},
                                                std::tuple{13.0, 2.0, 12.5}, std::tuple{10.0, -1.0, 9.52148}}) {
        TextRoom given;
        given.scale = scale;
        EXPECT_NEAR(fit("a\nb", given, Font::system(size)).lines()->broken->firstBaseline, baseline, 1e-9);
    }
}

TEST(TextFit, SpacingFollowsSizeAndWeight) {
    const struct {
        Font::Weight weight;
        double size, spacing;
    } rows[] = {
        {Font::Weight::regular, 13, 13 * (-0.0473 + 0.0806 / 2)},
        {Font::Weight::regular, 400, 400 * -0.0473},
        {Font::Weight::semibold, 12.5, 12.5 * (-0.0342 + 0.0783 / 2)},
        {Font::Weight::bold, 13.5, 13.5 * (-0.0268 + 0.0673 / 2)},
        {Font::Weight::bold, 1e-9, 1e-9 * (-0.0268 + 0.0673 / (1 + std::exp(-13.5 / 2.75)))},
    };
    for (const auto& row : rows) EXPECT_NEAR(letterSpacing(row.size, row.weight), row.spacing, 1e-9);

    const auto blank = [](double size, Font::Weight weight = Font::Weight::regular) {
        const Font font = Font::system(size, weight);
        return (naturalWidth("n n", font) - naturalWidth("nn", font) - letterSpacing(size, weight)) / size;
    };
    EXPECT_NEAR(blank(17) - blank(20), 0.025, 1e-4) << "narrower from 20 points on";
    EXPECT_NEAR(blank(17) - blank(18.5), 0.0125, 1e-4) << "half of it half way";
    EXPECT_NEAR(blank(17) - blank(40), 0.025, 1e-4);
    EXPECT_NEAR(blank(17, Font::Weight::bold), blank(40, Font::Weight::bold), 1e-4) << "only regular ones";
    EXPECT_NEAR(naturalWidth("n\u00A0n", Font::system(40)), naturalWidth("n n", Font::system(40)), 1e-3);
    const Font tabular = Font::monospacedDigitSystem(40, Font::Weight::semibold);
    const Font wide = Font::monospacedDigitSystem(1000, Font::Weight::semibold);
    const auto unspaced = [](const Font& font) {
        return (naturalWidth("000", font) / 3 - letterSpacing(font.size, font.weight)) / font.size;
    };
    EXPECT_NEAR(unspaced(tabular), unspaced(wide), 1e-4) << "a part of the size";
}

TEST(TextFit, LetterSpacingIsAddedAfterEachGlyph) {
    // All of a text but its spacing grows with the size.
    const double at10 = naturalWidth("nnnnnnnnnn", Font::system(10)) / 10;
    const double at40 = naturalWidth("nnnnnnnnnn", Font::system(40)) / 40;
    EXPECT_NEAR(at10 - at40, letterSpacing(10, Font::Weight::regular) - letterSpacing(40, Font::Weight::regular) / 4,
                1e-4);
    const double joined10 = naturalWidth("سسسس", Font::system(10)) / 10;
    const double joined40 = naturalWidth("سسسس", Font::system(40)) / 40;
    EXPECT_NEAR(joined10, joined40, 1e-4) << "joined letters have none";
    EXPECT_NEAR(naturalWidth("a\u0301\u200B\u2060"), naturalWidth("á"), 1e-4) << "nor has what is not seen";
}

TEST(TextFit, MonospacedDigitsHaveOneWidth) {
    const Font tabular = Font::monospacedDigitSystem(20, Font::Weight::regular);
    EXPECT_NEAR(naturalWidth("11:11", tabular), naturalWidth("08:40", tabular), 1e-3);
    EXPECT_LT(naturalWidth("11:11", Font::system(20)), naturalWidth("08:40", Font::system(20)) - 1);
}

TEST(TextFit, EmojiStandBesideText) {
    for (const char* emoji : {"😀", "👨‍👩‍👧‍👦", "🇯🇵", "1️⃣", "☀️", "👍🏽"}) {
        SCOPED_TRACE(emoji);
        EXPECT_NEAR(naturalWidth(emoji) / 17, 1.245, 0.01) << "one picture";
    }
}

TEST(TextFit, LinesAreBroken) {
    using Lines = std::vector<std::string>;
    const double word = naturalWidth("wonderful") + 0.01;
    const struct {
        const char* why;
        const char* text;
        std::optional<double> width;
        Lines lines;
    } rows[] = {
        {"no width", "Hello wonderful world", {}, {"Hello wonderful world"}},
        {"between words", "Hello wonderful world", word, {"Hello", "wonderful", "world"}},
        {"white space hangs", "wonderful   world", word, {"wonderful", "world"}},
        {"and breaks nothing at the end", "wonderful    ", word, {"wonderful"}},
        {"a blank before a character has no line in no width", "  a b", 0, {"  a", "b"}},
        {"a long word is broken between characters", "mmmm", naturalWidth("mm") + 0.01, {"mm", "mm"}},
        {"after what stands before it", "a mmmm", naturalWidth("mm") + 0.01, {"a", "mm", "mm"}},
        {"a non-breaking space does not break", "a\u00A0b c", naturalWidth("a\u00A0b"), {"a\u00A0b", "c"}},
        {"mandatory breaks", "a\n\nb", 300, {"a", "", "b"}},
        {"no room: a character a line", "ab c", 0, {"a", "b", "c"}},
        {"less than no room", "ab", -1, {"a", "b"}},
        {"graphemes stay whole", "e\u0301👨‍👩‍👧🇯🇵", 0, {"e\u0301", "👨‍👩‍👧", "🇯🇵"}},
        {"Thai breaks between words", "สวัสดีชาวโลก", naturalWidth("ชาวโลก") + 1, {"สวัสดี", "ชาวโลก"}},
        {"no comma begins a Japanese line", "日本、語", naturalWidth("日本") + 1, {"日", "本、", "語"}},
        {"an infinite width", "a b", std::numeric_limits<double>::infinity(), {"a b"}},
        {"a width that is no number", "a b", std::nan(""), {"a b"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(linesOf(fit(row.text, room(row.width))), row.lines);
    }
}

TEST(TextFit, BlanksCountInTheWidthButNeedNotFit) {
    const double blank = naturalWidth("n n") - naturalWidth("nn");
    const double words = naturalWidth("one two");
    EXPECT_NEAR(naturalWidth("one two "), words + blank, 1e-4);
    EXPECT_NEAR(naturalWidth("one two  "), words + 2 * blank, 1e-4);
    EXPECT_NEAR(naturalWidth("one two \nx"), words + blank, 1e-4) << "also at the end of a paragraph";
    TextRoom given = room(words + 0.01);
    given.scale = 0;
    const TextBlock narrow = fit("one two ", given);
    EXPECT_EQ(narrow.lineCount(), 1U);
    EXPECT_EQ(narrow.size().width, words + 0.01) << "never more than proposed";
    given.width = naturalWidth("wonderful") + blank / 2;
    EXPECT_NEAR(fit("wonderful world", given).size().width, *given.width, 1e-4) << "the blank between two lines";
}

TEST(TextFit, NoWordIsLeftAloneWhereLinesComeOutMoreEven) {
    using Lines = std::vector<std::string>;
    const double twoWords = naturalWidth("Layout must") + 0.5;
    const double threeWords = naturalWidth("Layout must wrap") + 0.5;
    const struct {
        const char* why;
        const char* text;
        TextRoom given;
        Lines lines;
    } rows[] = {
        {"the last word of the first line goes with it",
         "Layout must wrap it",
         room(threeWords),
         {"Layout must", "wrap it"}},
        {"not where that is less even", "Layout must sentences", room(twoWords), {"Layout must", "sentences"}},
        {"not where it does not fit",
         "a moved wonderful",
         room(naturalWidth("moved wonderful") - 1),
         {"a moved", "wonderful"}},
        {"one word stays", "Layouts it", room(naturalWidth("Layouts") + 1), {"Layouts", "it"}},
        {"two words are not alone", "Layout must wrap it so", room(threeWords), {"Layout must wrap", "it so"}},
        {"nor is one of three lines",
         "Layout must Layout must it",
         room(twoWords),
         {"Layout must", "Layout must", "it"}},
        {"blanks at the end count for nothing", "Layout must wrap it  ", room(threeWords), {"Layout must", "wrap it"}},
        {"each paragraph for itself",
         "a\nLayout must wrap it\nb",
         room(threeWords),
         {"a", "Layout must", "wrap it", "b"}},
        {"not where it is cut off", "Layout must wrap it\nb", room(threeWords, 2), {"Layout must wrap", "it…"}},
        {"nor in the one line shown", "Layout must wrap it", room(threeWords, 1), {"Layout must wr…"}},
        {"a limit that is kept cuts nothing", "Layout must wrap it", room(threeWords, 2), {"Layout must", "wrap it"}},
        {"a broken word is no word", "mmmm", room(naturalWidth("mmm") + 0.01), {"mmm", "m"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(linesOf(fit(row.text, row.given)), row.lines);
    }
}

TEST(TextFit, WhatDoesNotFitEndsInAnEllipsis) {
    using Lines = std::vector<std::string>;
    const double lineHeight = 17 * lineHeightOfSize;
    const double width = naturalWidth("Hello wonde…") + 0.01;
    const struct {
        const char* why;
        const char* text;
        TextRoom given;
        Lines lines;
    } rows[] = {
        {"one line", "Hello wonderful world", room(width, 1), {"Hello wonde…"}},
        {"a limit below one is one", "Hello wonderful world", room(width, -3), {"Hello wonde…"}},
        {"the last of two lines", "Hello wonderful new world", room(width, 2), {"Hello", "wonderful n…"}},
        {"what fits is not cut", "Hello", room(width, 1), {"Hello"}},
        {"no space before the ellipsis", "Hello wonderful", room(naturalWidth("Hello …") + 1, 1), {"Hello…"}},
        {"a further paragraph is lost", "a\nb", room({}, 1), {"a…"}},
        {"but not an empty one", "a\n\n", room({}, 1), {"a"}},
        {"room for one line by height", "a\nb\nc", room({}, {}, lineHeight * 1.9), {"a…"}},
        {"two lines, exactly", "a\nb\nc", room({}, {}, lineHeight * 2), {"a", "b…"}},
        {"two lines, short by a rounding error", "a\nb\nc", room({}, {}, lineHeight * 2 - 1e-9), {"a", "b…"}},
        {"at least one", "a\nb", room({}, {}, -10), {"a…"}},
        {"the smaller limit counts", "a\nb\nc", room({}, 1, 500), {"a…"}},
        {"an infinite height", "a\nb", room({}, {}, std::numeric_limits<double>::infinity()), {"a", "b"}},
        {"a height that is no number", "a\nb", room({}, {}, std::nan("")), {"a", "b"}},
        {"not even the ellipsis fits", "wide", room(1, 1), {"…"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const TextBlock block = fit(row.text, row.given);
        EXPECT_EQ(linesOf(block), row.lines);
        EXPECT_EQ(block.truncated(), row.lines.back().ends_with("…"));
        EXPECT_EQ(block.lineCount(), row.lines.size());
        if (row.given.width) {
            EXPECT_LE(block.size().width, *row.given.width);
        }
    }
}

TEST(TextFit, ATextKeepsItsLinesInTheRoomItAnswered) {
    const std::string text = "The quick brown fox jumps over the lazy dog, again and again.";
    for (const double scale : {0.5, 1.0, 2.0, 3.0})
        for (const double size : {1e-3, 7.3, 11.0, 17.0, 33.3})
            for (const double width : {20.0, 70.0, 133.3}) {
                TextRoom given = room(width);
                given.scale = scale;
                const TextBlock first = fit(text, given, Font::system(size));
                given.width = first.size().width;
                given.height = first.size().height;
                const TextBlock again = fit(text, given, Font::system(size));
                EXPECT_FALSE(again.truncated()) << size << " at " << scale << " in " << width;
                EXPECT_EQ(again.size(), first.size());
            }
}

}  // namespace
}  // namespace tavrin::text
