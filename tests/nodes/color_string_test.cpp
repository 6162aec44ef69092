// SPDX-License-Identifier: MIT
#include "tavrin/nodes/color_string.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

Color bytes(int red, int green, int blue, double opacity = 1) {
    return Color::rgb(red / 255.0, green / 255.0, blue / 255.0, opacity);
}

TEST(ColorString, IsRead) {
    const struct {
        const char* why;
        const char* text;
        Color color;
    } rows[] = {
        {"six digits", "#FF8800", bytes(0xFF, 0x88, 0)},
        {"without a hash, in small letters", "ff8800", bytes(0xFF, 0x88, 0)},
        {"letters of both cases", "#aBcDeF", bytes(0xAB, 0xCD, 0xEF)},
        {"opacity in per cent", "#50FF0000", bytes(0xFF, 0, 0, 0.5)},
        {"that without a hash", "50FF0000", bytes(0xFF, 0, 0, 0.5)},
        {"five per cent", "#05000000", bytes(0, 0, 0, 0.05)},
        {"none at all", "#00123456", bytes(0x12, 0x34, 0x56, 0)},
        {"the most that two digits say", "#99123456", bytes(0x12, 0x34, 0x56, 0.99)},
        {"a pair of letters is no per cent", "#FFFF0000", bytes(0xFF, 0, 0)},
        {"a pair that is no number at all", "#XX00FF00", bytes(0, 0xFF, 0)},
        {"half of a decimal pair", "#5A00FF00", bytes(0, 0xFF, 0)},
        {"a pair with a plus", "#+5102030", bytes(0x10, 0x20, 0x30, 0.05)},
        {"a pair with a minus: less than none", "#-5102030", bytes(0x10, 0x20, 0x30, -0.05)},
        {"a pair of minus one", "#-1102030", bytes(0x10, 0x20, 0x30, -0.01)},
        {"a pair of minus nought", "#-0102030", bytes(0x10, 0x20, 0x30, 0)},
        {"a plus and a letter are no decimal pair", "#+F102030", bytes(0x10, 0x20, 0x30)},
        {"nor are two signs", "#+-102030", bytes(0x10, 0x20, 0x30)},
        {"nor a blank and a digit", "# 5102030", bytes(0x10, 0x20, 0x30)},
        {"five digits after a hash are one number", "#FFFFF", bytes(0x0F, 0xFF, 0xFF)},
        {"the seventh digit is left out", "#1234567", bytes(0x12, 0x34, 0x56)},
        {"without a hash too", "1234567", bytes(0x12, 0x34, 0x56)},
        {"nine digits begin with their pair", "123456789", bytes(0x34, 0x56, 0x78, 0.12)},
        {"what follows the sixth is left out", "#50FF0000AB", bytes(0xFF, 0, 0, 0.5)},
        {"whatever it is", "#50FF0000, and more of this \xF0\x9F\x8C\x88", bytes(0xFF, 0, 0, 0.5)},
        {"what a model's opaque colour becomes", "#100FF0000", bytes(0x0F, 0xF0, 0, 0.1)},
        {"a sign among the six", "#+0FF00", bytes(0, 0xFF, 0)},
        {"a sign before five", "+FFFFF", bytes(0x0F, 0xFF, 0xFF)},
        {"minus one has every bit", "#-00001", bytes(0xFF, 0xFF, 0xFF)},
        {"other negative numbers their low bits", "-00100", bytes(0xFF, 0xFF, 0)},
        {"minus nought is black", "-00000", bytes(0, 0, 0)},
        {"blanks around", " \t#00ff00\r\n ", bytes(0, 0xFF, 0)},
        {"no-break, wide and other blanks", "\xC2\xA0\xE3\x80\x80\xE2\x80\x83#00FF00\xE2\x80\xA8\xC2\x85\xE2\x80\xAF",
         bytes(0, 0xFF, 0)},
        {"vertical tabs and form feeds", "\v#00FF00\f", bytes(0, 0xFF, 0)},
        {"a character of three bytes counts once",
         "\xE2\x82\xAC"
         "9102030",
         bytes(0x10, 0x20, 0x30)},
        {"and is left out once at the end", "102030\xE2\x82\xAC", bytes(0x10, 0x20, 0x30)},
        {"a digit with an accent is one character, and no digit", "#5\u03010102030", bytes(0x10, 0x20, 0x30)},
        {"CR LF is one character", "#\r\n1102030", bytes(0x10, 0x20, 0x30)},
        {"so is an emoji of several parts", "#\U0001F468\u200D\U0001F4695102030", bytes(0x10, 0x20, 0x30)},
        {"and a flag", "#\U0001F1E9\U0001F1EA5102030", bytes(0x10, 0x20, 0x30)},
        {"an accent left out with its character", "#50FF0000A\u0301\u0301", bytes(0xFF, 0, 0, 0.5)},
        {"blanks go by code points", "#00FF00 \r\n\u2028\r", bytes(0, 0xFF, 0)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::optional<Color> color = colorFromHexString(row.text);
        ASSERT_TRUE(color.has_value());
        EXPECT_EQ(*color, row.color);
    }
}

TEST(ColorString, IsNoColour) {
    EXPECT_EQ(colorFromHexString(std::nullopt), std::nullopt);
    const struct {
        const char* why;
        std::string_view text;
    } rows[] = {
        {"nothing", ""},
        {"blanks", "        "},
        {"three digits", "#FFF"},
        {"five without a hash", "12345"},
        {"five among blanks", "  12345  "},
        {"a hash alone", "#"},
        {"other letters", "FF00GG"},
        {"two hashes", "##FF000"},
        {"a hash in the middle", "50#FF000"},
        {"a sign of base sixteen", "0xFF00"},
        {"a blank within", "FF 00FF"},
        {"a pair and a rest with a blank", "00FF00 x"},
        {"two signs", "+-0000"},
        {"a sign at the end", "00000-"},
        {"a sign alone after a pair", "50-     .."},
        {"five characters of four bytes",
         "\xF0\x9F\x8C\x88\xF0\x9F\x8C\x88\xF0\x9F\x8C\x88\xF0\x9F\x8C\x88\xF0\x9F\x8C\x88"},
        {"wide digits", "\xEF\xBC\x91\xEF\xBC\x92\xEF\xBC\x93\xEF\xBC\x94\xEF\xBC\x95\xEF\xBC\x96"},
        {"a character among the digits",
         "\xC3\xA9"
         "FF000"},
        {"a blank that is none",
         "\xE2\x80\x8B"
         "FF0000"},
        {"a sign of base sixteen after a hash", "#0x1020"},
        {"or after a pair", "#500xFF00"},
        {"a sixth digit with an accent",
         "#10203"
         "0\u0301"},
        {"a first digit with one", "1\u030102030"},
        {"a hash with an accent is no hash", "#\u0301102030"},
        {"an accent is no blank", "10203 \u0301"},
        {"five characters, one of them CR LF", "10\r\n30"},
        {"a null character", std::string_view("FF\0"
                                              "000",
                                              6)},
        {"bytes that are no text", "\x80\xBF\xFF\xFE\xF0\xE2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(colorFromHexString(row.text), std::nullopt);
    }
}

TEST(ConvertARGB, TurnsAlphaIntoPerCent) {
    const struct {
        const char* why;
        const char* value;
        const char* converted;
    } rows[] = {
        {"none", "#00102030", "#00102030"},
        {"0.4 per cent", "#01102030", "#00102030"},
        {"0.8 per cent", "#02102030", "#00102030"},
        {"1.2 per cent", "#03102030", "#01102030"},
        {"49.8 per cent", "#7F102030", "#49102030"},
        {"50.2 per cent", "#80102030", "#50102030"},
        {"eighty per cent", "#CC102030", "#80102030"},
        {"99.2 per cent", "#FD102030", "#99102030"},
        {"99.6 per cent", "#FE102030", "#99102030"},
        {"all of it has three digits", "#FF102030", "#100102030"},
        {"small letters", "#ff102030", "#100102030"},
        {"no hexadecimal pair counts as all", "#XY102030", "#100102030"},
        {"half a pair too", "#8Y102030", "#100102030"},
        {"a pair with a plus", "#+F102030", "#05102030"},
        {"a pair with a minus", "#-1102030", "#00102030"},
        {"a large one", "#-F102030", "#-5102030"},
        {"blanks are no digits", "# 8102030", "#100102030"},
        {"whatever the first character is", "x80102030", "x50102030"},
        {"and the others", "#80 so so", "#50 so so"},
        {"a character of two bytes first",
         "\xC2\xA7"
         "80102030",
         "\xC2\xA7"
         "50102030"},
        {"as the pair",
         "#\xC2\xA7\xC2\xA7"
         "102030",
         "#100102030"},
        {"at the end", "#8010203\xF0\x9F\x8C\x88", "#5010203\xF0\x9F\x8C\x88"},
        {"an accent belongs to its digit", "#80102030\u0301", "#50102030\u0301"},
        {"also in the pair", "#8\u03010102030", "#100102030"},
        {"CR LF is one character", "#80 so\r\nso", "#50 so\r\nso"},
        {"an emoji of several parts, too", "#8010203\U0001F468\u200D\U0001F469", "#5010203\U0001F468\u200D\U0001F469"},
        {"nine code points of eight characters stay", "#8010203\u0301", "#8010203\u0301"},
        {"a sign of base sixteen is no number", "#0x102030", "#100102030"},
        {"eight characters stay", "80102030", "80102030"},
        {"seven", "#102030", "#102030"},
        {"ten", "#100102030", "#100102030"},
        {"none", "", ""},
        {"nine bytes, but fewer characters",
         "#\xC2\xA7"
         "102030",
         "#\xC2\xA7"
         "102030"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(convertARGB(row.value), row.converted);
    }
}

TEST(ConvertARGB, TruncatesEveryAlpha) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        char value[10];
        std::snprintf(value, sizeof value, "#%02X102030", static_cast<unsigned>(alpha));
        char converted[12];
        std::snprintf(converted, sizeof converted, "#%02d102030", alpha * 100 / 255);
        EXPECT_EQ(convertARGB(value), converted);
    }
}

TEST(DynamicColor, KeepsBothColours) {
    const Color light = bytes(1, 2, 3, 0.5);
    const Color dark = bytes(4, 5, 6);
    const std::optional<Color> color = dynamicColor(light, dark);
    ASSERT_TRUE(color.has_value());
    EXPECT_EQ(color->source(), Color::Source::dynamic);
    EXPECT_EQ(color->resolved(Appearance::light), light.resolved(Appearance::light));
    EXPECT_EQ(color->resolved(Appearance::dark), dark.resolved(Appearance::dark));
    const std::optional<Color> twice = dynamicColor(*color, *color);
    EXPECT_EQ(twice, color) << "of two such colours each gives its own side";
}

}  // namespace
}  // namespace tavrin
