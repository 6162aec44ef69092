// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/number_text.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "tests/foundation/comma_locale.h"

namespace tavrin {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(NumberText, WritesDoubles) {
    const struct {
        const char* why;
        double number;
        const char* text;
    } rows[] = {
        {"zero", 0, "0.0"},
        {"negative zero keeps its sign", -0.0, "-0.0"},
        {"whole numbers get .0", 100000, "100000.0"},
        {"fewest digits", 0.1, "0.1"},
        {"as many digits as it takes", 0.1 + 0.2, "0.30000000000000004"},
        {"smallest decimal", 1e-4, "0.0001"},
        {"just below it", 0.00009999999999999999, "9.999999999999999e-05"},
        {"small", 1e-5, "1e-05"},
        {"2^53 is the largest decimal", 9007199254740992, "9007199254740992.0"},
        {"negative alike", -9007199254740992, "-9007199254740992.0"},
        {"just above it", 9007199254740994, "9.007199254740994e+15"},
        {"large", 1e20, "1e+20"},
        {"three digits of exponent", 1.5e300, "1.5e+300"},
        {"smallest of all", 5e-324, "5e-324"},
        {"largest of all", std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {"infinite", infinity, "inf"},
        {"negative infinite", -infinity, "-inf"},
        {"not a number", std::nan(""), "nan"},
        {"the sign of nan is not shown", -std::nan(""), "nan"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(toText(row.number), row.text);
    }
}

TEST(NumberText, WritesFloats) {
    const struct {
        const char* why;
        float number;
        const char* text;
    } rows[] = {
        {"digits of a float, not of a double", 0.1F, "0.1"},
        {"smallest decimal, although it is below 1e-4 as a double", 1e-4F, "0.0001"},
        {"just below it", std::nextafter(1e-4F, 0.0F), "9.999999e-05"},
        {"2^24 is the largest decimal", 16777216.0F, "16777216.0"},
        {"just above it", 16777218.0F, "1.6777218e+07"},
        {"a moment of today", 1700000128.0F, "1.7000001e+09"},
        {"smallest of all", 1e-45F, "1e-45"},
        {"infinite", -std::numeric_limits<float>::infinity(), "-inf"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(toText(row.number), row.text);
    }
}

TEST(NumberText, WritesIntegers) {
    EXPECT_EQ(toText(0), "0");
    EXPECT_EQ(toText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(toText(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(toText(static_cast<unsigned char>(7)), "7");
}

TEST(NumberText, ReadsDoubles) {
    const struct {
        const char* why;
        std::string_view text;
        std::optional<double> number;
    } rows[] = {
        {"decimal", "12.5", 12.5},
        {"plus", "+12.5", 12.5},
        {"minus", "-12.5", -12.5},
        {"nothing before the point", ".5", 0.5},
        {"nothing behind the point", "5.", 5.0},
        {"leading zeros", "007", 7.0},
        {"exponent", "1e2", 100.0},
        {"large E and sign", "1E+2", 100.0},
        {"point and exponent", "5.e-1", 0.5},
        {"hexadecimal", "0x1.8p3", 12.0},
        {"hexadecimal without exponent", "0x1F", 31.0},
        {"hexadecimal with signs", "-0X.8P-1", -0.25},
        {"halves round to even", "9007199254740993", 9007199254740992.0},
        {"a little more than half rounds up", "9007199254740993.00000000000000000000000000000001", 9007199254740994.0},
        {"too large", "1e400", infinity},
        {"too large and negative", "-1e400", -infinity},
        {"too large without exponent", "0x1p1024", infinity},
        {"exponent that fits nothing", "1e99999999999999999999", infinity},
        {"too small", "1e-400", 0.0},
        {"too small, written with a large exponent", "0.00000000000000000001e-320", 0.0},
        {"too small, hexadecimal", "0x1p-2000", 0.0},
        {"exponent that fits nothing, below", "1e-99999999999999999999", 0.0},
        {"zero stays zero", "0e99999999999999999999", 0.0},
        {"subnormal", "5e-324", 5e-324},
        {"infinity", "inf", infinity},
        {"in any letter case", "-InFiNiTy", -infinity},
        {"empty", "", std::nullopt},
        {"a sign alone", "+", std::nullopt},
        {"two signs", "+-1", std::nullopt},
        {"a point alone", ".", std::nullopt},
        {"an exponent alone", "e5", std::nullopt},
        {"exponent without digits", "1e", std::nullopt},
        {"exponent with sign alone", "1e+", std::nullopt},
        {"blank before", " 1", std::nullopt},
        {"blank behind", "1 ", std::nullopt},
        {"something behind", "1px", std::nullopt},
        {"comma", "1,5", std::nullopt},
        {"digit groups", "1_000", std::nullopt},
        {"hexadecimal without digits", "0x", std::nullopt},
        {"hexadecimal with a point alone", "0x.", std::nullopt},
        {"sign behind 0x", "0x-1", std::nullopt},
        {"word behind 0x", "0xinf", std::nullopt},
        {"half a word", "infin", std::nullopt},
        {"nan with a payload", "nan(1)", std::nullopt},
        {"NUL behind", std::string_view("1\0", 2), std::nullopt},
        {"digits of another script", "\u0661", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(doubleFromText(row.text), row.number);
    }
    EXPECT_TRUE(std::signbit(doubleFromText("-0").value()));
    EXPECT_TRUE(std::isnan(doubleFromText("NaN").value()));
    EXPECT_TRUE(std::isnan(doubleFromText("-nan").value()));
}

TEST(NumberText, ReadsFloats) {
    const struct {
        const char* why;
        std::string_view text;
        std::optional<float> number;
    } rows[] = {
        {"rounded once, from the text", "1.00000017881393432617187499", 1.00000012F},
        {"rounded once, hexadecimal", "0x1.000001000001p0", 1.00000012F},
        {"a moment of today", "1700000100", 1700000128.0F},
        {"too large for a float", "1e39", std::numeric_limits<float>::infinity()},
        {"too small for a float", "1e-46", 0.0F},
        {"nothing", "", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(floatFromText(row.text), row.number);
    }
}

TEST(NumberText, ReadsLongTextsQuickly) {
    const std::string zeros(1'000'000, '0');
    EXPECT_EQ(doubleFromText("1" + zeros), infinity);
    EXPECT_EQ(doubleFromText("0." + zeros + "1"), 0.0);
    EXPECT_EQ(doubleFromText(zeros + "7"), 7.0);
    EXPECT_EQ(doubleFromText("1." + zeros + "x"), std::nullopt);
    EXPECT_EQ(intFromText<int>(zeros + "7"), 7);
}

TEST(NumberText, ReadsIntegers) {
    const struct {
        const char* why;
        std::string_view text;
        std::optional<std::int8_t> number;
    } rows[] = {
        {"digits", "12", 12},           {"plus", "+12", 12},
        {"minus", "-12", -12},          {"negative zero", "-0", 0},
        {"leading zeros", "0005", 5},   {"largest", "127", 127},
        {"smallest", "-128", -128},     {"above", "128", {}},
        {"below", "-129", {}},          {"empty", "", {}},
        {"a sign alone", "-", {}},      {"two signs", "+-1", {}},
        {"two equal signs", "++1", {}}, {"point", "1.0", {}},
        {"exponent", "1e1", {}},        {"hexadecimal", "0x1", {}},
        {"blank before", " 1", {}},     {"blank behind", "1 ", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(intFromText<std::int8_t>(row.text), row.number);
    }
}

TEST(NumberText, ReadsUnsignedIntegers) {
    const struct {
        const char* why;
        std::string_view text;
        std::optional<std::uint64_t> number;
    } rows[] = {
        {"largest", "18446744073709551615", std::numeric_limits<std::uint64_t>::max()},
        {"above", "18446744073709551616", {}},
        {"plus", "+5", 5},
        {"negative zero", "-0", 0},
        {"negative", "-1", {}},
        {"minus alone", "-", {}},
        {"two signs", "--0", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(intFromText<std::uint64_t>(row.text), row.number);
    }
}

TEST(NumberText, KnowsWholeNumbers) {
    const struct {
        const char* why;
        double number;
        std::optional<std::int64_t> integer;
    } rows[] = {
        {"whole", 3.0, 3},
        {"negative zero", -0.0, 0},
        {"fraction", 2.5, {}},
        {"-2^63", -9223372036854775808.0, std::numeric_limits<std::int64_t>::min()},
        {"2^63", 9223372036854775808.0, {}},
        {"infinite", infinity, {}},
        {"not a number", std::nan(""), {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(exactInteger(row.number), row.integer);
    }
}

TEST(NumberText, ReadsBackWhatItWrites) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 20'000; ++i) {
        const double number = std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 2000) - 1000);
        ASSERT_EQ(doubleFromText(toText(number)), number);
        const auto narrow = static_cast<float>(number);
        ASSERT_EQ(floatFromText(toText(narrow)), narrow);
    }
}

TEST(NumberText, IgnoresTheLocale) {
    const CommaLocale locale;
    EXPECT_EQ(toText(1.5), "1.5");
    EXPECT_EQ(doubleFromText("1.5"), 1.5);
}

}  // namespace
}  // namespace tavrin
