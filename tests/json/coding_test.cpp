// SPDX-License-Identifier: MIT
#include "tavrin/json/coding.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tavrin/json/json_text.h"

namespace tavrin {
namespace {

using Kind = DecodingError::Kind;

template <class T>
T decoded(std::string_view text, DecodingOptions options = {}) {
    const JSONText parsed(text);
    return decode<T>(Decoder(parsed.root(), options));
}

template <class T>
std::string encoded(const T& value) {
    JSONWriter writer(JSONWriter::Style::compact);
    encode(value, writer);
    return std::move(writer).text();
}

struct Failure {
    Kind kind;
    std::string path;
    std::string message;
    friend bool operator==(const Failure&, const Failure&) = default;
    friend void PrintTo(const Failure& failure, std::ostream* out) {
        *out << static_cast<int>(failure.kind) << " at '" << failure.path << "': " << failure.message;
    }
};

template <class T>
std::optional<Failure> failureOf(std::string_view text, DecodingOptions options = {}) {
    try {
        static_cast<void>(decoded<T>(text, options));
    } catch (const DecodingError& error) {
        EXPECT_STREQ(error.what(), error.message.c_str());
        return Failure{error.kind, toText(error.codingPath), error.message};
    }
    return std::nullopt;
}

TEST(Coding, DecodesScalars) {
    EXPECT_EQ(decoded<std::string>(R"("a\nb")"), "a\nb");
    EXPECT_TRUE(decoded<bool>("true"));
    EXPECT_FALSE(decoded<bool>("false"));
    EXPECT_EQ(decoded<std::optional<int>>("null"), std::nullopt);
    EXPECT_EQ(decoded<std::optional<int>>("7"), 7);
    EXPECT_EQ(decoded<std::vector<int>>("[1, 2.0, 3e0]"), (std::vector{1, 2, 3}));
    EXPECT_EQ(decoded<std::vector<std::optional<bool>>>("[null, true]"), (std::vector<std::optional<bool>>{{}, true}));
    EXPECT_TRUE(decoded<std::vector<int>>("[]").empty());
}

template <class T>
void expectRange() {
    using Limits = std::numeric_limits<T>;
    EXPECT_EQ(decoded<T>(std::to_string(Limits::min())), Limits::min());
    EXPECT_EQ(decoded<T>(std::to_string(Limits::max())), Limits::max());
    const Failure outOfRange{Kind::dataCorrupted, "", "the number is no whole number in range"};
    if constexpr (sizeof(T) < 8) {
        EXPECT_EQ(failureOf<T>(std::to_string(std::int64_t{Limits::max()} + 1)), outOfRange);
        EXPECT_EQ(failureOf<T>(std::to_string(std::int64_t{Limits::min()} - 1)), outOfRange);
    }
    EXPECT_EQ(failureOf<T>("2.5"), outOfRange);
    EXPECT_EQ(failureOf<T>("1e300"), outOfRange);
    EXPECT_EQ(failureOf<T>("99999999999999999999"), outOfRange);
    EXPECT_EQ(failureOf<T>("-9223372036854775809"), outOfRange);
    if constexpr (std::is_unsigned_v<T>) {
        EXPECT_EQ(failureOf<T>("-1"), outOfRange);
    }
    EXPECT_EQ(encoded(Limits::max()), std::to_string(Limits::max()));
    EXPECT_EQ(encoded(Limits::min()), std::to_string(Limits::min()));
}

TEST(Coding, IntegersKeepTheirRange) {
    expectRange<std::int8_t>();
    expectRange<std::int16_t>();
    expectRange<std::int32_t>();
    expectRange<std::int64_t>();
    expectRange<std::uint8_t>();
    expectRange<std::uint16_t>();
    expectRange<std::uint32_t>();
    expectRange<std::uint64_t>();
}

TEST(Coding, DecodesFloatingPoint) {
    EXPECT_EQ(decoded<double>("0.1"), 0.1);
    EXPECT_EQ(decoded<float>("0.1"), 0.1f);
    EXPECT_EQ(decoded<double>("3"), 3.0);
    EXPECT_EQ(decoded<float>("16777217"), 16777216.0f) << "halfway, to even";
    EXPECT_EQ(decoded<double>("18446744073709551615"), 18446744073709551616.0);
    EXPECT_EQ(decoded<double>("-9223372036854775809"), -0x1p63);
    EXPECT_EQ(decoded<double>("5e-324"), 5e-324);
}

TEST(Coding, ConvertsNonConformingFloatsOnDemand) {
    const DecodingOptions converting{.convertsNonConformingFloats = true};
    EXPECT_EQ(decoded<double>(R"("infinity")", converting), std::numeric_limits<double>::infinity());
    EXPECT_EQ(decoded<float>(R"("-infinity")", converting), -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(decoded<double>(R"("nan")", converting)));
    const Failure noNumber{Kind::typeMismatch, "", "expected a number, found a string"};
    EXPECT_EQ(failureOf<double>(R"("infinity")"), noNumber);
    for (const char* other : {R"("Infinity")", R"("inf")", R"("NaN")", R"("")", R"("1")", R"("+infinity")"})
        EXPECT_EQ(failureOf<double>(other, converting), noNumber) << other;
    EXPECT_EQ(failureOf<int>(R"("infinity")", converting), noNumber) << "for floating-point numbers only";
}

TEST(Coding, SaysWhatWasExpected) {
    const struct {
        const char* why;
        std::optional<Failure> failure;
        Failure expected;
    } rows[] = {
        {"a number for a string",
         failureOf<std::string>("1"),
         {Kind::typeMismatch, "", "expected a string, found a number"}},
        {"a boolean is no number",
         failureOf<int>("true"),
         {Kind::typeMismatch, "", "expected a number, found a boolean"}},
        {"a number is no boolean",
         failureOf<bool>("1"),
         {Kind::typeMismatch, "", "expected a boolean, found a number"}},
        {"null for a value",
         failureOf<std::string>("null"),
         {Kind::valueNotFound, "", "expected a string, found null"}},
        {"null for a floating-point number",
         failureOf<float>("null"),
         {Kind::valueNotFound, "", "expected a number, found null"}},
        {"an object for an array",
         failureOf<std::vector<int>>("{}"),
         {Kind::typeMismatch, "", "expected an array, found an object"}},
        {"an array for an optional",
         failureOf<std::optional<int>>("[]"),
         {Kind::typeMismatch, "", "expected a number, found an array"}},
        {"an element has a place",
         failureOf<std::vector<std::vector<int>>>(R"([[1], [2, 3, "x"]])"),
         {Kind::typeMismatch, "[1][2]", "expected a number, found a string"}},
        {"the first failure is reported",
         failureOf<std::vector<int>>(R"([1, null, "x"])"),
         {Kind::valueNotFound, "[1]", "expected a number, found null"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.failure, row.expected);
    }
}

TEST(Coding, CutsLongWordsInMessages) {
    const JSONText text("{}");
    const DecodingOptions options;
    const Decoder decoder(text.root(), options);
    try {
        decoder.failKeyNotFound(std::string(79, 'a') + "\u00e9\u00e9");
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind, Kind::keyNotFound);
        EXPECT_EQ(error.key, std::string(79, 'a') + "\u00e9\u00e9");
        EXPECT_EQ(error.message, "the key \"" + std::string(79, 'a') + "\u2026\" is missing");
    }
}

TEST(Coding, Encodes) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct {
        const char* why;
        std::string text;
        const char* expected;
    } rows[] = {
        {"a string", encoded(std::string("a\"\n\u00e9")), "\"a\\\"\\n\u00e9\""},
        {"a boolean", encoded(true), "true"},
        {"an absent value", encoded(std::optional<int>()), "null"},
        {"a present value", encoded(std::optional<int>(3)), "3"},
        {"a list", encoded(std::vector<int>{1, 2}), "[1,2]"},
        {"an empty list", encoded(std::vector<int>{}), "[]"},
        {"whole numbers without a point", encoded(3.0), "3"},
        {"the fewest digits of a double", encoded(0.1), "0.1"},
        {"the fewest digits of a float", encoded(0.1f), "0.1"},
        {"a float's third", encoded(1.0f / 3), "0.33333334"},
        {"a float beyond 2^24", encoded(123456792.0f), "123456790"},
        {"the largest float", encoded(std::numeric_limits<float>::max()), "3.4028235e+38"},
        {"the smallest float", encoded(std::numeric_limits<float>::denorm_min()), "1e-45"},
        {"zero below zero", encoded(-0.0), "-0"},
        {"infinity", encoded(infinity), "\"infinity\""},
        {"negative infinity", encoded(-std::numeric_limits<float>::infinity()), "\"-infinity\""},
        {"not a number", encoded(std::nanf("")), "\"nan\""},
        {"a large integer", encoded(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.text, row.expected);
    }
}

}  // namespace
}  // namespace tavrin
