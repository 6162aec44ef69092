// SPDX-License-Identifier: MIT
#include "tavrin/values/dsl_value.h"

#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "tavrin/engine/json_decoder.h"
#include "tavrin/nodes/text_nodes.h"

namespace tavrin {
namespace {

template <class T>
using Value = LosslessDSLValue<T>;

template <class T>
Value<T> decoded(std::string_view text) {
    return JSONDecoder().decode<Value<T>>(text);
}

/// What a literal comes to: its value's text, or which error.
template <class T>
std::string reading(std::string_view text) {
    try {
        const Value<T> value = decoded<T>(text);
        if (!value.resolved()) return "expression " + std::string(value.box.expr());
        if constexpr (DSLOptional<T>) {
            if (!value.wrappedValue()) return "absent";
        }
        return value.description();
    } catch (const DecodingError& error) {
        return error.kind == DecodingError::Kind::typeMismatch ? "mismatch" : "no value";
    } catch (const ConversionError&) {
        return "no conversion";
    }
}

TEST(LosslessDSLValue, ConvertsLiterals) {
    const struct {
        const char* why;
        std::string found;
        const char* expected;
    } rows[] = {
        {"text for a string", reading<std::string>(R"(" a ")"), " a "},
        {"an integer for a string", reading<std::string>("5"), "5"},
        {"a whole number for a string", reading<std::string>("3.0"), "3"},
        {"an exponent for a string", reading<std::string>("1e2"), "100"},
        {"a fraction for a string", reading<std::string>("2.50"), "2.5"},
        {"a small fraction for a string", reading<std::string>("0.00001"), "1e-05"},
        {"a large number for a string", reading<std::string>("1e20"), "1e+20"},
        {"a number below 64 bits", reading<std::string>("-9223372036854775809"), "-9.223372036854776e+18"},
        {"a number of 64 bits", reading<std::string>("18446744073709551615"), "18446744073709551615"},
        {"a boolean for a string", reading<std::string>("true"), "true"},
        {"null for a string", reading<std::string>("null"), "no value"},
        {"an array for a string", reading<std::string>("[]"), "mismatch"},
        {"an object for a string", reading<std::string>("{}"), "mismatch"},

        {"an integer for a float", reading<float>("3"), "3.0"},
        {"a fraction for a float", reading<float>("2.5"), "2.5"},
        {"text for a float", reading<float>(R"("12")"), "12.0"},
        {"text of a fraction for a float", reading<float>(R"("-.5e1")"), "-5.0"},
        {"text of infinity for a float", reading<float>(R"("infinity")"), "inf"},
        {"text with a blank for a float", reading<float>(R"(" 12")"), "no conversion"},
        {"a word for a float", reading<float>(R"("abc")"), "no conversion"},
        {"the empty text for a float", reading<float>(R"("")"), "no conversion"},
        {"a boolean is no number", reading<float>("true"), "mismatch"},
        {"null for a float", reading<float>("null"), "no value"},
        {"an array for a float", reading<float>("[1]"), "mismatch"},
        {"zero below zero is the integer zero", reading<float>("-0.0"), "0.0"},
        {"text of zero below zero keeps its sign", reading<float>(R"("-0.0")"), "-0.0"},
        {"too large for a float", reading<float>("1e300"), "inf"},
        {"too small for a float", reading<float>("1e-300"), "0.0"},
        {"a wide number for a float", reading<float>("99999999999999999999"), "1e+20"},
        {"a double keeps its digits", reading<double>("0.1"), "0.1"},

        {"a boolean", reading<bool>("true"), "true"},
        {"text for a boolean", reading<bool>(R"("false")"), "false"},
        {"one is no boolean", reading<bool>("1"), "mismatch"},
        {"text of one is no boolean", reading<bool>(R"("1")"), "no conversion"},
        {"capitals are no boolean", reading<bool>(R"("True")"), "no conversion"},

        {"an integer", reading<std::int64_t>("-7"), "-7"},
        {"a whole number for an integer", reading<std::int64_t>("7.0"), "7"},
        {"a fraction for an integer", reading<std::int64_t>("7.5"), "mismatch"},
        {"text of a whole number with a point", reading<std::int64_t>(R"("7.0")"), "no conversion"},
        {"text of an integer", reading<std::int64_t>(R"("+7")"), "7"},
        {"an integer too large", reading<std::int8_t>("128"), "mismatch"},
        {"an integer just small enough", reading<std::int8_t>("-128"), "-128"},
        {"below zero for an unsigned", reading<std::uint16_t>("-1"), "mismatch"},
        {"the largest unsigned", reading<std::uint64_t>("18446744073709551615"), "18446744073709551615"},
        {"beyond the signed ones", reading<std::int64_t>("9223372036854775808"), "mismatch"},
        {"below the signed ones", reading<std::int64_t>("-9223372036854775809"), "mismatch"},

        {"a keyword", reading<FontWeight>(R"("bold")"), "bold"},
        {"a capitalised keyword", reading<FontWeight>(R"("Bold")"), "no conversion"},
        {"a number for a keyword", reading<FontWeight>("1"), "mismatch"},

        {"a value for an optional", reading<std::optional<float>>("2"), "2.0"},
        {"a word for an optional", reading<std::optional<float>>(R"("abc")"), "absent"},
        {"a boolean for an optional float", reading<std::optional<float>>("true"), "absent"},
        {"an unknown keyword for an optional", reading<std::optional<FontWeight>>(R"("Bold")"), "absent"},
        {"a fraction for an optional integer", reading<std::optional<std::int64_t>>("2.5"), "absent"},
        {"one for an optional boolean", reading<std::optional<bool>>("1"), "absent"},
        {"the empty text for an optional string", reading<std::optional<std::string>>(R"("")"), ""},
        {"a number for an optional string", reading<std::optional<std::string>>("5"), "5"},
        {"an object fails even for an optional", reading<std::optional<float>>("{}"), "mismatch"},
        {"an array fails even for an optional", reading<std::optional<std::string>>("[]"), "mismatch"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.found, row.expected);
    }
}

TEST(LosslessDSLValue, TellsExpressionsFromText) {
    const struct {
        const char* why;
        const char* text;
        const char* expected;
    } rows[] = {
        {"braces around", R"("{{initServerParam.title}}")", "expression {{initServerParam.title}}"},
        {"nothing inside", R"("{{}}")", "expression {{}}"},
        {"anything inside", R"("{{a]b[ {{ }} \n}}")", "expression {{a]b[ {{ }} \n}}"},
        {"a blank before", R"(" {{a}}")", " {{a}}"},
        {"a blank behind", R"("{{a}} ")", "{{a}} "},
        {"one brace at the end", R"("{{a}")", "{{a}"},
        {"one brace at the start", R"("{a}}")", "{a}}"},
        {"too few braces", R"("{{}")", "{{}"},
        {"three braces", R"("{}}")", "{}}"},
        {"text before", R"("x{{a}}")", "x{{a}}"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(reading<std::string>(row.text), row.expected);
    }
    EXPECT_EQ(reading<float>(R"("{{a}}")"), "expression {{a}}");
    EXPECT_EQ(reading<float>(R"(" {{a}}")"), "no conversion");
    EXPECT_EQ(reading<std::optional<float>>(R"("{{a}")"), "absent");
}

TEST(LosslessDSLValue, SaysWhatIsWrong) {
    try {
        static_cast<void>(decoded<float>(R"("abc")"));
        FAIL();
    } catch (const ConversionError& error) {
        EXPECT_STREQ(ConversionError::domain, "ZepDSLConverter");
        EXPECT_EQ(ConversionError::code, -1);
        EXPECT_EQ(error.message, "cannot convert \"abc\" to Float");
        EXPECT_EQ(error.role, TextRole::document);
    }
    try {
        static_cast<void>(decoded<float>("[]"));
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind, DecodingError::Kind::typeMismatch);
        EXPECT_EQ(error.message, "expected a number or an expression, found an array");
    }
}

// The rule is the number's shortest text, read as the property's type: no rounding through the wider type in between.
TEST(LosslessDSLValue, RoundsOnceToSinglePrecision) {
    const auto viaText = [](double number) { return floatFromText(toText(number)).value(); };
    const auto expectSame = [&](double number) {
        const float found = singlePrecision(number);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(found), std::bit_cast<std::uint32_t>(viaText(number))) << toText(number);
    };
    // Exactly between two floats as a double, but its shortest text lies above.
    EXPECT_EQ(singlePrecision(1.00000017881393432617187499), viaText(1.00000017881393432617187499));
    for (const double number : {0.0, -0.0, 0.1, 1.0, 16777217.0, 1e-45, 7e-46, 7.1e-46, 1.1754943e-38, 3.4028235e38,
                                3.4028235677973366e38, 3.4028236e38, 1e39, -1e39, 5e-324, 1.7976931348623157e308})
        expectSame(number);
    std::mt19937_64 random(1);
    for (int i = 0; i < 20'000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random()) & 0x7FFF'FFFF;
        const float lower = std::bit_cast<float>(bits);
        const float upper = std::bit_cast<float>(bits + 1);
        if (!std::isfinite(lower) || !std::isfinite(upper)) continue;
        const double middle = (double{lower} + double{upper}) / 2;
        expectSame(middle);
        expectSame(std::nextafter(middle, 0));
        expectSame(std::nextafter(middle, 1e300));
        expectSame(double{lower});
    }
    for (int i = 0; i < 20'000; ++i) {
        const double number = std::bit_cast<double>(random());
        if (std::isfinite(number)) expectSame(number);
    }
}

template <class T>
void expectIntegersAsTheirText() {
    std::mt19937_64 random(2);
    for (int i = 0; i < 2'000; ++i) {
        const std::uint64_t wide = random() >> (random() % 64);
        const auto narrow = static_cast<std::int64_t>(wide);
        EXPECT_EQ(convertNumber<T>(wide), fromText<T>(std::to_string(wide))) << wide;
        EXPECT_EQ(convertNumber<T>(narrow), fromText<T>(std::to_string(narrow))) << narrow;
        EXPECT_EQ(convertNumber<T>(-narrow), fromText<T>(std::to_string(-narrow))) << -narrow;
    }
}

TEST(LosslessDSLValue, IntegersConvertAsTheirText) {
    expectIntegersAsTheirText<std::string>();
    expectIntegersAsTheirText<bool>();
    expectIntegersAsTheirText<std::int8_t>();
    expectIntegersAsTheirText<std::int16_t>();
    expectIntegersAsTheirText<std::int64_t>();
    expectIntegersAsTheirText<std::uint8_t>();
    expectIntegersAsTheirText<std::uint16_t>();
    expectIntegersAsTheirText<std::uint64_t>();
    expectIntegersAsTheirText<float>();
    expectIntegersAsTheirText<double>();
    expectIntegersAsTheirText<std::optional<float>>();
    expectIntegersAsTheirText<std::optional<std::int8_t>>();
}

TEST(LosslessDSLValue, ExpressionsReadAsTheirText) {
    const Expr title{"{{initServerParam.size}}"};
    EXPECT_EQ(Value<std::string>(title).wrappedValue(), title.text);
    EXPECT_EQ(Value<std::optional<std::string>>(Expr{title.text}).wrappedValue(), title.text);
    EXPECT_EQ(Value<float>(Expr{title.text}).wrappedValue(), 0.0f);
    EXPECT_EQ(Value<std::optional<float>>(Expr{title.text}).wrappedValue(), std::nullopt);
    EXPECT_EQ(Value<bool>(Expr{title.text}).wrappedValue(), false);
    EXPECT_EQ(Value<FontWeight>(Expr{title.text}).wrappedValue(), FontWeight::regular);
    EXPECT_EQ(Value<float>(Expr{"12"}).wrappedValue(), 12.0f) << "any text can be put there in code";
    EXPECT_EQ(Value<float>(Expr{title.text}).description(), "0.0");
    EXPECT_EQ(Value<std::optional<float>>(Expr{title.text}).description(), "");
}

TEST(LosslessDSLValue, AnEmptyExpressionIsNoValue) {
    const Value<float> empty(Expr{""});
    EXPECT_FALSE(empty.resolved());
    EXPECT_EQ(empty.box.value(), nullptr);
    EXPECT_EQ(empty.wrappedValue(), 0.0f);
    EXPECT_FALSE(empty == Value<float>(0.0f));
    EXPECT_EQ(empty, Value<float>(Expr{""}));
    EXPECT_EQ(Value<FontWeight>(Expr{""}).wrappedValue(), FontWeight::regular);
}

TEST(LosslessDSLValue, IsMadeInCode) {
    EXPECT_EQ(Value<float>(3).wrappedValue(), 3.0f);
    EXPECT_EQ(Value<float>(2.5).wrappedValue(), 2.5f);
    EXPECT_EQ(Value<float>("7").wrappedValue(), 7.0f);
    EXPECT_EQ(Value<float>("seven").wrappedValue(), 0.0f) << "the default where the text does not do";
    EXPECT_EQ(Value<float>(true).wrappedValue(), 0.0f);
    EXPECT_EQ(Value<bool>(true).wrappedValue(), true);
    EXPECT_EQ(Value<bool>("true").wrappedValue(), true);
    EXPECT_EQ(Value<bool>(1).wrappedValue(), false);
    EXPECT_EQ(Value<std::string>(5).wrappedValue(), "5");
    EXPECT_EQ(Value<std::string>(2.5).wrappedValue(), "2.5");
    EXPECT_EQ(Value<std::string>(true).wrappedValue(), "true");
    EXPECT_EQ(Value<std::int64_t>(2.5).wrappedValue(), 0);
    EXPECT_EQ(Value<FontWeight>("semibold").wrappedValue(), FontWeight::semibold);
    EXPECT_EQ(Value<FontWeight>("Semibold").wrappedValue(), FontWeight::regular);
    EXPECT_EQ(Value<std::optional<float>>(4).wrappedValue(), 4.0f);
    EXPECT_EQ(Value<std::optional<float>>("four").wrappedValue(), std::nullopt);
    const Value<std::string> braces("{{initServerParam.a}}");
    EXPECT_TRUE(braces.resolved()) << "a literal in code is never an expression";
    EXPECT_EQ(braces.wrappedValue(), "{{initServerParam.a}}");
    EXPECT_EQ(Value<std::string>().wrappedValue(), "");
    EXPECT_EQ(Value<FontWeight>().wrappedValue(), FontWeight::regular);
    EXPECT_EQ(Value<std::optional<bool>>().wrappedValue(), std::nullopt);
}

TEST(LosslessDSLValue, IsBuiltFromText) {
    const auto expression = Value<float>::fromText("{{a}}");
    ASSERT_TRUE(expression);
    EXPECT_FALSE(expression->resolved());
    EXPECT_EQ(*expression, Value<float>(Expr{"{{a}}"}));
    EXPECT_EQ(Value<float>::fromText("2.5"), Value<float>(2.5f));
    EXPECT_EQ(Value<float>::fromText("abc"), std::nullopt);
    EXPECT_EQ(Value<std::string>::fromText("{{a}"), Value<std::string>(std::string("{{a}")));
    EXPECT_EQ(Value<std::optional<float>>::fromText("abc"), Value<std::optional<float>>(std::optional<float>()));
    EXPECT_EQ(Value<FontWeight>::fromText("bold"), Value<FontWeight>(FontWeight::bold));
}

TEST(LosslessDSLValue, IsWrittenAndResolved) {
    Value<float> value(Expr{"{{initServerParam.size}}"});
    EXPECT_FALSE(value.resolved());
    const ModelContext model(JSON::parse(R"({"size": 12})"), {});
    EXPECT_EQ(value.resolve(model), 12.0f);
    EXPECT_FALSE(value.resolved()) << "resolving reads only";
    value.setWrappedValue(value.resolve(model));
    EXPECT_TRUE(value.resolved());
    EXPECT_EQ(value.wrappedValue(), 12.0f);
    EXPECT_EQ(value.resolve(ModelContext(JSON(), {})), 12.0f) << "a value needs no model";
    value = Value<float>(Expr{"{{a}}"});
    const Value<float> copy = value;
    EXPECT_EQ(copy, value);
    value.setWrappedValue(3);
    EXPECT_EQ(value, Value<float>(3.0f));
    EXPECT_FALSE(copy.resolved()) << "a copy is a value of its own";
    EXPECT_FALSE(copy == value);
    EXPECT_FALSE(copy == Value<float>(Expr{"{{b}}"}));
    EXPECT_FALSE(copy == Value<float>(0.0f)) << "an expression equals no value, whatever it reads as";

    const Value<float> failing(Expr{"{{initServerParam.x}}"});
    EXPECT_THROW(static_cast<void>(failing.resolve(model)), ModelContextError);
}

TEST(LosslessDSLValue, Encodes) {
    const JSONEncoder& encoder = DSLJSONEncoder();
    EXPECT_EQ(encoder.encode(Value<float>(Expr{"{{a}}"})), R"("{{a}}")");
    EXPECT_EQ(encoder.encode(Value<float>(2.5f)), "2.5");
    EXPECT_EQ(encoder.encode(Value<float>(0.1f)), "0.1");
    EXPECT_EQ(encoder.encode(Value<std::string>("a")), R"("a")");
    EXPECT_EQ(encoder.encode(Value<bool>(true)), "true");
    EXPECT_EQ(encoder.encode(Value<FontWeight>(FontWeight::bold)), R"("bold")");
    EXPECT_EQ(encoder.encode(Value<std::optional<float>>()), "null");
}

TEST(DSLValue, DecodesAndEncodesWhatItHolds) {
    EXPECT_EQ(JSONDecoder().decode<DSLValue<std::string>>(R"("{{a}}")").wrappedValue, "{{a}}") << "never an expression";
    EXPECT_THROW(static_cast<void>(JSONDecoder().decode<DSLValue<std::string>>("5")), DecodingError)
        << "never converted";
    EXPECT_EQ(JSONDecoder().decode<DSLValue<std::optional<int>>>("null").wrappedValue, std::nullopt);
    EXPECT_EQ(DSLJSONEncoder().encode(DSLValue<std::string>{"a"}), R"("a")");
}

TEST(DSLValueWithDefault, IsEmptyUnlessGiven) {
    using List = DSLValueWithDefault<std::vector<int>>;
    EXPECT_TRUE(List().wrappedValue().empty());
    EXPECT_EQ(List(), List(std::vector<int>{}));
    EXPECT_EQ(JSONDecoder().decode<List>("[1,2]"), List(std::vector{1, 2}));
    EXPECT_THROW(static_cast<void>(JSONDecoder().decode<List>("[1,\"x\"]")), DecodingError);
    EXPECT_EQ(DSLJSONEncoder().encode(List()), "[]");
    const List list(std::vector{1, 2});
    const List copy = list;
    EXPECT_EQ(copy.wrappedValue().data(), list.wrappedValue().data()) << "copies share the list";
}

TEST(LossyDSLArrayValue, LeavesOutWhatCannotBeDecoded) {
    using List = LossyDSLArrayValue<int>;
    EXPECT_EQ(JSONDecoder().decode<List>(R"([1, "x", null, 2.5, {"a": [3]}, [4], 5])").wrappedValue,
              (std::vector{1, 5}));
    EXPECT_TRUE(JSONDecoder().decode<List>("[true]").wrappedValue.empty());
    EXPECT_THROW(static_cast<void>(JSONDecoder().decode<List>("{}")), DecodingError);
    EXPECT_EQ(JSONDecoder().decode<LossyDSLArrayValue<Value<float>>>(R"(["x", 1])").wrappedValue.size(), 1u);
    EXPECT_EQ(DSLJSONEncoder().encode(List{{1, 2}}), "[1,2]");
}

TEST(DSLJSONCoders, ReadAndWriteNonConformingFloats) {
    EXPECT_EQ(DSLJSONDecoder().decode<std::vector<double>>(R"(["infinity", "-infinity", 1])"),
              (std::vector{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), 1.0}));
    EXPECT_TRUE(std::isnan(DSLJSONDecoder().decode<float>(R"("nan")")));
    EXPECT_THROW(static_cast<void>(JSONDecoder().decode<double>(R"("infinity")")), DecodingError);
    const std::vector<float> odd{std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                                 std::nanf("")};
    EXPECT_EQ(DSLJSONEncoder().encode(odd), R"(["infinity","-infinity","nan"])");
    EXPECT_EQ(&DSLJSONDecoder(), &DSLJSONDecoder()) << "shared";
    EXPECT_EQ(&DSLJSONEncoder(), &DSLJSONEncoder());
}

}  // namespace
}  // namespace tavrin
