// SPDX-License-Identifier: MIT
#include "tavrin/values/text_conversion.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tavrin/nodes/text_nodes.h"
#include "tavrin/values/alignment_dsl.h"
#include "tavrin/values/dsl_value.h"

namespace tavrin {
namespace {

template <class T>
using Lossless = LosslessStringConvertible<T>;

TEST(TextConversion, BuildsStringsAndBooleans) {
    EXPECT_EQ(fromText<std::string>(" a\n"), " a\n") << "a text is itself";
    EXPECT_EQ(fromText<bool>("true"), true);
    EXPECT_EQ(fromText<bool>("false"), false);
    for (const char* other : {"", "True", "TRUE", "1", "0", "yes", " true", "true "})
        EXPECT_EQ(fromText<bool>(other), std::nullopt) << other;
}

template <class T>
void expectIntegers() {
    using Limits = std::numeric_limits<T>;
    EXPECT_EQ(fromText<T>(std::to_string(Limits::min())), Limits::min());
    EXPECT_EQ(fromText<T>(std::to_string(Limits::max())), Limits::max());
    EXPECT_EQ(fromText<T>(std::to_string(Limits::max()) + "0"), std::nullopt);
    EXPECT_EQ(fromText<T>("+7"), T{7});
    EXPECT_EQ(fromText<T>("-0"), T{0});
    EXPECT_EQ(fromText<T>("007"), T{7});
    for (const char* other : {"", "+", "-", "1.0", "1e2", " 1", "1 ", "0x1", "+-1", "-+1", "--1", "a", "\u0661"})
        EXPECT_EQ(fromText<T>(other), std::nullopt) << other;
    if constexpr (std::is_unsigned_v<T>) {
        EXPECT_EQ(fromText<T>("-1"), std::nullopt);
    }
    EXPECT_EQ(Lossless<T>::description(Limits::min()), std::to_string(Limits::min()));
    EXPECT_EQ(Lossless<T>::defaultValue(), T{0});
}

TEST(TextConversion, BuildsIntegersOfEachSize) {
    expectIntegers<std::int8_t>();
    expectIntegers<std::int16_t>();
    expectIntegers<std::int64_t>();
    expectIntegers<std::uint8_t>();
    expectIntegers<std::uint16_t>();
    expectIntegers<std::uint64_t>();
}

template <class T>
void expectFloatingPoint() {
    const struct {
        const char* why;
        const char* text;
        std::optional<T> number;
    } rows[] = {
        {"digits", "12", T{12}},
        {"a fraction", "-2.5", T{-2.5}},
        {"a plus sign", "+2.5", T{2.5}},
        {"no digit before the point", ".5", T{0.5}},
        {"no digit after it", "5.", T{5}},
        {"an exponent", "1.5E+2", T{150}},
        {"hexadecimal", "0x1.8p1", T{3}},
        {"infinity", "inf", std::numeric_limits<T>::infinity()},
        {"infinity in full", "-Infinity", -std::numeric_limits<T>::infinity()},
        {"too large", "1e999", std::numeric_limits<T>::infinity()},
        {"too small", "1e-999", T{0}},
        {"nothing", "", std::nullopt},
        {"a point alone", ".", std::nullopt},
        {"a blank before", " 1", std::nullopt},
        {"a blank behind", "1 ", std::nullopt},
        {"a boolean", "true", std::nullopt},
        {"a word", "abc", std::nullopt},
        {"a unit", "12pt", std::nullopt},
        {"a comma", "1,5", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(fromText<T>(row.text), row.number);
    }
    EXPECT_TRUE(std::isnan(fromText<T>("NaN").value()));
    EXPECT_TRUE(std::signbit(fromText<T>("-0").value()));
    EXPECT_EQ(Lossless<T>::description(T{3}), "3.0");
    EXPECT_EQ(Lossless<T>::defaultValue(), T{0});
}

TEST(TextConversion, BuildsFloatingPointNumbers) {
    expectFloatingPoint<float>();
    expectFloatingPoint<double>();
    EXPECT_EQ(Lossless<float>::description(0.1f), "0.1");
}

TEST(TextConversion, OptionalsAreAlwaysBuilt) {
    const std::optional<std::optional<float>> built = fromText<std::optional<float>>("2.5");
    ASSERT_TRUE(built);
    EXPECT_EQ(*built, 2.5f);
    const std::optional<std::optional<float>> absent = fromText<std::optional<float>>("abc");
    ASSERT_TRUE(absent) << "an absent value, not a failure";
    EXPECT_EQ(*absent, std::nullopt);
    EXPECT_EQ(*fromText<std::optional<FontWeight>>("Bold"), std::nullopt);
    EXPECT_EQ(*fromText<std::optional<std::string>>(""), "");
    EXPECT_EQ(Lossless<std::optional<float>>::description(2.5f), "2.5");
    EXPECT_EQ(Lossless<std::optional<float>>::description(std::nullopt), "");
    EXPECT_EQ(Lossless<std::optional<float>>::defaultValue(), std::nullopt);
}

template <StringConvertible Enum>
void expectKeywords(Enum defaultCase, const std::vector<std::pair<Enum, std::string>>& cases) {
    ASSERT_EQ(Keywords<Enum>::raw.size(), cases.size());
    for (const auto& [value, raw] : cases) {
        EXPECT_EQ(rawValue(value), raw);
        EXPECT_EQ(fromText<Enum>(raw), value);
        EXPECT_EQ(Lossless<Enum>::description(value), raw);
        for (const std::string& other : {raw + " ", " " + raw, raw.substr(1), raw + raw})
            EXPECT_EQ(fromText<Enum>(other), std::nullopt) << other;
        std::string capitalised = raw;
        capitalised[0] = static_cast<char>(capitalised[0] - 'a' + 'A');
        EXPECT_EQ(fromText<Enum>(capitalised), std::nullopt) << capitalised;
    }
    EXPECT_EQ(fromText<Enum>(""), std::nullopt);
    EXPECT_EQ(Lossless<Enum>::defaultValue(), defaultCase);
}

TEST(TextConversion, KeywordsAreMatchedExactly) {
    expectKeywords<HorizontalAlignmentDSL>(HorizontalAlignmentDSL::center,
                                           {{HorizontalAlignmentDSL::leading, "leading"},
                                            {HorizontalAlignmentDSL::center, "center"},
                                            {HorizontalAlignmentDSL::trailing, "trailing"}});
    expectKeywords<VerticalAlignmentDSL>(VerticalAlignmentDSL::center, {{VerticalAlignmentDSL::top, "top"},
                                                                        {VerticalAlignmentDSL::center, "center"},
                                                                        {VerticalAlignmentDSL::bottom, "bottom"}});
    expectKeywords<AlignmentDSL>(AlignmentDSL::center, {{AlignmentDSL::center, "center"},
                                                        {AlignmentDSL::leading, "leading"},
                                                        {AlignmentDSL::trailing, "trailing"},
                                                        {AlignmentDSL::top, "top"},
                                                        {AlignmentDSL::bottom, "bottom"},
                                                        {AlignmentDSL::topLeading, "topLeading"},
                                                        {AlignmentDSL::topTrailing, "topTrailing"},
                                                        {AlignmentDSL::bottomLeading, "bottomLeading"},
                                                        {AlignmentDSL::bottomTrailing, "bottomTrailing"}});
    expectKeywords<FontWeight>(
        FontWeight::regular,
        {{FontWeight::regular, "regular"}, {FontWeight::semibold, "semibold"}, {FontWeight::bold, "bold"}});
}

TEST(TextConversion, AlignmentsMapToThePlatform) {
    EXPECT_EQ(platformValue(HorizontalAlignmentDSL::leading), HorizontalAlignment::leading);
    EXPECT_EQ(platformValue(HorizontalAlignmentDSL::center), HorizontalAlignment::center);
    EXPECT_EQ(platformValue(HorizontalAlignmentDSL::trailing), HorizontalAlignment::trailing);
    EXPECT_EQ(platformValue(VerticalAlignmentDSL::top), VerticalAlignment::top);
    EXPECT_EQ(platformValue(VerticalAlignmentDSL::center), VerticalAlignment::center);
    EXPECT_EQ(platformValue(VerticalAlignmentDSL::bottom), VerticalAlignment::bottom);
    for (std::size_t i = 0; i < Keywords<AlignmentDSL>::raw.size(); ++i) {
        const auto keyword = static_cast<AlignmentDSL>(i);
        EXPECT_EQ(name(platformValue(keyword)), rawValue(keyword));
    }
}

TEST(TextConversion, TypesHaveNames) {
    EXPECT_EQ(Lossless<std::string>::typeName(), "String");
    EXPECT_EQ(Lossless<bool>::typeName(), "Bool");
    EXPECT_EQ(Lossless<std::int64_t>::typeName(), "Int");
    EXPECT_EQ(Lossless<std::uint8_t>::typeName(), "UInt8");
    EXPECT_EQ(Lossless<std::int16_t>::typeName(), "Int16");
    EXPECT_EQ(Lossless<float>::typeName(), "Float");
    EXPECT_EQ(Lossless<double>::typeName(), "Double");
    EXPECT_EQ(Lossless<FontWeight>::typeName(), "FontWeight");
}

}  // namespace
}  // namespace tavrin
