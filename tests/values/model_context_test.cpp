// SPDX-License-Identifier: MIT
#include "tavrin/values/model_context.h"

#include <concepts>
#include <limits>
#include <optional>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/modifiers/layout_modifiers.h"
#include "tavrin/nodes/text_nodes.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/values/alignment_dsl.h"

namespace tavrin {
namespace {

/// A type of the host's own.
struct Celsius {
    int degrees = 0;
};

}  // namespace

template <>
struct LosslessStringConvertible<Celsius> {
    static std::optional<Celsius> fromText(std::string_view text) {
        const auto degrees = intFromText<int>(text.substr(0, text.find(' ')));
        return degrees ? std::optional(Celsius{*degrees}) : std::nullopt;
    }
    static std::string description(Celsius value) { return toText(value.degrees) + " degrees"; }
    static Celsius defaultValue() { return {}; }
    static std::string typeName() { return "Celsius"; }
    static std::string readableName() { return "a temperature"; }
};

namespace {

const ModelContext& sample() {
    static const ModelContext model(JSON::parse(R"({
        "title": "Rain", "count": 3, "half": 0.5, "wide": 18446744073709551616, "low": -9223372036854775809,
        "yes": true, "nothing": null, "digits": "12", "word": "abc", "weight": "bold", "Weight": "Bold",
        "items": [{"title": "first"}, {"title": "second"}, [7]], "": "empty key", "a b": "blank",
        "a[x]": "brackets", "a[]": "no index", "a[ 1]": "blank index", "é": "accent",
        "deep": {"a": {"b": {"c": [[1, 2], 3]}}}, "twice": 1, "twice": 2, "list": [10, 20]
    })"),
                                    {{"scale", 2},
                                     {"dark", true},
                                     {"name", "Ann"},
                                     {"ratio", 0.25},
                                     {"tenth", 0.1F},
                                     {"text", "12"},
                                     {"large", 3e7F},
                                     {"odd", 16777218.0F},
                                     {"whole", 16777216.0F},
                                     {"small", 0.0001F},
                                     {"tiny", 1e-5F},
                                     {"endless", std::numeric_limits<float>::infinity()},
                                     {"double", 3e7},
                                     {"byte", std::uint8_t{200}},
                                     {"most", std::numeric_limits<std::uint64_t>::max()},
                                     {"string", std::string("text")},
                                     {"view", std::string_view("text")},
                                     {"shared", SharedText("text")},
                                     {"corner", AlignmentDSL::topLeading},
                                     {"weight", FontWeight::bold},
                                     {"some", std::optional<float>(0.1F)},
                                     {"none", std::optional<float>()},
                                     {"no text", std::optional<std::string>()},
                                     {"own", Celsius{21}}});
    return model;
}

/// What an expression comes to: the value's text, or the error's message.
template <class T>
std::string resolved(std::string_view expression) {
    try {
        return LosslessStringConvertible<T>::description(sample().resolve<T>(expression));
    } catch (const ModelContextError& error) {
        EXPECT_EQ(error.kind, "ResolveExpression");
        EXPECT_EQ(error.message, error.what());
        return "! " + error.message;
    }
}

TEST(ModelContext, ResolvesPathsInTheModel) {
    const struct {
        const char* why;
        const char* expression;
        const char* expected;
    } rows[] = {
        {"a key", "{{initServerParam.title}}", "Rain"},
        {"an index", "{{initServerParam.items[0].title}}", "first"},
        {"the last index", "{{initServerParam.list[1]}}", "20"},
        {"an index with a sign", "{{initServerParam.list[+1]}}", "20"},
        {"zero below zero", "{{initServerParam.list[-0]}}", "10"},
        {"an index with zeros before it", "{{initServerParam.list[001]}}", "20"},
        {"what stands behind the bracket is ignored", "{{initServerParam.list[1][5]xyz}}", "20"},
        {"only the first index of two counts", "{{initServerParam.items[2][0]}}", "[7]"},
        {"empty components are dropped", "{{initServerParam..title}}", "Rain"},
        {"also before and behind", "{{.initServerParam.title.}}", "Rain"},
        {"deep", "{{initServerParam.deep.a.b.c[1]}}", "3"},
        {"a key with a blank", "{{initServerParam.a b}}", "blank"},
        {"a key in brackets that is no index", "{{initServerParam.a[x]}}", "brackets"},
        {"empty brackets", "{{initServerParam.a[]}}", "no index"},
        {"a blank in the brackets", "{{initServerParam.a[ 1]}}", "blank index"},
        {"letters outside ASCII", "{{initServerParam.\u00e9}}", "accent"},
        {"the first of equal keys", "{{initServerParam.twice}}", "1"},
        {"a whole dictionary", "{{initServerParam.items[0]}}", R"({"title":"first"})"},
        {"null is a value", "{{initServerParam.nothing}}", "null"},

        {"no braces", "initServerParam.title", "!  invalid model expression initServerParam.title"},
        {"one brace", "{initServerParam.title}", "!  invalid model expression {initServerParam.title}"},
        {"empty text", "", "!  invalid model expression "},
        {"overlapping braces", "{{}", "!  invalid model expression {{}"},
        {"nothing inside", "{{}}", "! KeyPath Invalid: []"},
        {"dots only", "{{...}}", "! KeyPath Invalid: []"},
        {"one element", "{{initServerParam}}", R"(! KeyPath Invalid: ["initServerParam"])"},
        {"one element of an unknown store", "{{x}}", R"(! KeyPath Invalid: ["x"])"},
        {"an unknown store", "{{data.x}}", "! Invalid keypath store: data"},
        {"a store with a blank", "{{ initServerParam.title }}", "! Invalid keypath store:  initServerParam"},
        {"stores are case-sensitive", "{{initserverparam.title}}", "! Invalid keypath store: initserverparam"},
        {"an index on no name", "{{[0]}}", "! Invalid keypath store: "},
        {"a missing key", "{{initServerParam.x}}", R"(! key path not found in model: ["x"])"},
        {"a missing key inside", "{{initServerParam.items[0].x}}",
         R"(! key path not found in model: ["items", 0, "x"])"},
        {"past the end", "{{initServerParam.list[2]}}", R"(! key path not found in model: ["list", 2])"},
        {"before the start", "{{initServerParam.items[-1]}}", R"(! key path not found in model: ["items", -1])"},
        {"a number as a key of an array", "{{initServerParam.items.0}}",
         R"(! key path not found in model: ["items", "0"])"},
        {"an index too large for any integer", "{{initServerParam.list[99999999999999999999]}}",
         R"(! key path not found in model: ["list[99999999999999999999]"])"},
        {"an index into a dictionary", "{{initServerParam.deep[0]}}", R"(! key path not found in model: ["deep", 0])"},
        {"a key of a text", "{{initServerParam.title.x}}", R"(! key path not found in model: ["title", "x"])"},
        {"the model is no array", "{{initServerParam[0]}}", "! key path not found in model: [0]"},
        {"quotes in a key", "{{initServerParam.a\"b}}", R"(! key path not found in model: ["a\"b"])"},
        {"one bracket is part of a key", "{{initServerParam.list[1}}", R"(! key path not found in model: ["list[1"])"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(resolved<std::string>(row.expression), row.expected);
    }
}

TEST(ModelContext, ConvertsModelValues) {
    const struct {
        const char* why;
        std::string found;
        const char* expected;
    } rows[] = {
        {"a number for a string", resolved<std::string>("{{initServerParam.count}}"), "3"},
        {"a fraction for a string", resolved<std::string>("{{initServerParam.half}}"), "0.5"},
        {"a boolean for a string", resolved<std::string>("{{initServerParam.yes}}"), "true"},
        {"beyond 64 bits for a string", resolved<std::string>("{{initServerParam.wide}}"), "1.8446744073709552e+19"},
        {"below 64 bits for a string", resolved<std::string>("{{initServerParam.low}}"), "-9.223372036854776e+18"},
        {"a number for a number", resolved<float>("{{initServerParam.half}}"), "0.5"},
        {"text for a number", resolved<float>("{{initServerParam.digits}}"), "12.0"},
        {"text for an integer", resolved<std::int64_t>("{{initServerParam.digits}}"), "12"},
        {"a word for a number", resolved<float>("{{initServerParam.word}}"), "! unable to convert value abc to Float"},
        {"null for a number", resolved<float>("{{initServerParam.nothing}}"),
         "! unable to convert value null to Float"},
        {"an array for a number", resolved<float>("{{initServerParam.list}}"),
         "! unable to convert value [10,20] to Float"},
        {"a boolean for a number", resolved<float>("{{initServerParam.yes}}"),
         "! unable to convert value true to Float"},
        {"a fraction for an integer", resolved<std::int64_t>("{{initServerParam.half}}"),
         "! unable to convert value 0.5 to Int"},
        {"a number for a boolean", resolved<bool>("{{initServerParam.count}}"), "! unable to convert value 3 to Bool"},
        {"a boolean", resolved<bool>("{{initServerParam.yes}}"), "true"},
        {"a word for an optional", resolved<std::optional<float>>("{{initServerParam.word}}"), ""},
        {"null for an optional", resolved<std::optional<float>>("{{initServerParam.nothing}}"), ""},
        {"null for an optional string is text", resolved<std::optional<std::string>>("{{initServerParam.nothing}}"),
         "null"},
        {"an optional number", resolved<std::optional<float>>("{{initServerParam.count}}"), "3.0"},
        {"a missing key fails an optional too", resolved<std::optional<float>>("{{initServerParam.x}}"),
         R"(! key path not found in model: ["x"])"},
        {"a keyword", resolved<FontWeight>("{{initServerParam.weight}}"), "bold"},
        {"a capitalised keyword", resolved<FontWeight>("{{initServerParam.Weight}}"),
         "! unable to convert value Bold to FontWeight"},
        {"a keyword of a modifier", resolved<AspectRatioModifier::ContentMode>("{{initServerParam.word}}"),
         "! unable to convert value abc to AspectRatioModifier.ContentMode"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.found, row.expected);
    }
}

TEST(ModelContext, ResolvesTheEnvironment) {
    const struct {
        const char* why;
        std::string found;
        const char* expected;
    } rows[] = {
        {"text", resolved<std::string>("{{initEnvironment.name}}"), "Ann"},
        {"a number", resolved<float>("{{initEnvironment.scale}}"), "2.0"},
        {"a fraction", resolved<float>("{{initEnvironment.ratio}}"), "0.25"},
        {"a number as text", resolved<std::string>("{{initEnvironment.scale}}"), "2"},
        {"a number of single precision as its own text", resolved<std::string>("{{initEnvironment.tenth}}"), "0.1"},
        {"a number of single precision", resolved<float>("{{initEnvironment.tenth}}"), "0.1"},
        {"a boolean", resolved<bool>("{{initEnvironment.dark}}"), "true"},
        {"a boolean as text", resolved<std::string>("{{initEnvironment.dark}}"), "true"},
        {"text for a number", resolved<std::int64_t>("{{initEnvironment.text}}"), "12"},
        {"further elements are ignored", resolved<std::string>("{{initEnvironment.name.x[3]}}"), "Ann"},
        {"also an index behind the name", resolved<std::string>("{{initEnvironment.name[0]}}"), "Ann"},
        {"its own fewest digits", resolved<std::string>("{{initEnvironment.large}}"), "3e+07"},
        {"which read back as the same float", resolved<std::string>("{{initEnvironment.odd}}"), "1.6777218e+07"},
        {"decimal up to its last exact integer", resolved<std::string>("{{initEnvironment.whole}}"), "16777216.0"},
        {"and down to a ten thousandth", resolved<std::string>("{{initEnvironment.small}}"), "0.0001"},
        {"but not below", resolved<std::string>("{{initEnvironment.tiny}}"), "1e-05"},
        {"infinity", resolved<std::string>("{{initEnvironment.endless}}"), "inf"},
        {"a float for a double goes through its text", resolved<double>("{{initEnvironment.tenth}}"), "0.1"},
        {"a float for an integer, too", resolved<std::int64_t>("{{initEnvironment.whole}}"),
         "! Env unable to convert value 16777216.0 to Int"},
        {"a double has more digits before an exponent", resolved<std::string>("{{initEnvironment.double}}"),
         "30000000.0"},
        {"a small integer", resolved<std::string>("{{initEnvironment.byte}}"), "200"},
        {"the largest integer", resolved<std::uint64_t>("{{initEnvironment.most}}"), "18446744073709551615"},
        {"out of range for another", resolved<std::int64_t>("{{initEnvironment.most}}"),
         "! Env unable to convert value 18446744073709551615 to Int"},
        {"a string", resolved<SharedText>("{{initEnvironment.string}}"), "text"},
        {"a view of one", resolved<std::string>("{{initEnvironment.view}}"), "text"},
        {"a shared text", resolved<std::optional<SharedText>>("{{initEnvironment.shared}}"), "text"},
        {"a keyword", resolved<AlignmentDSL>("{{initEnvironment.corner}}"), "topLeading"},
        {"a keyword as text", resolved<std::string>("{{initEnvironment.corner}}"), "topLeading"},
        {"a keyword for an optional", resolved<std::optional<FontWeight>>("{{initEnvironment.weight}}"), "bold"},
        {"a keyword that the other type has not", resolved<std::optional<FontWeight>>("{{initEnvironment.corner}}"),
         ""},
        {"an optional that is there", resolved<float>("{{initEnvironment.some}}"), "0.1"},
        {"one that is not, as text", resolved<std::string>("{{initEnvironment.none}}"), ""},
        {"as a number", resolved<float>("{{initEnvironment.none}}"), "! Env unable to convert value  to Float"},
        {"a host's own type", resolved<std::string>("{{initEnvironment.own}}"), "21 degrees"},
        {"for itself", resolved<Celsius>("{{initEnvironment.own}}"), "21 degrees"},
        {"no such key", resolved<std::string>("{{initEnvironment.x}}"), "! Environment Variable not exist for key: x"},
        {"an index", resolved<std::string>("{{initEnvironment[0]}}"),
         "! Environment Variable Key must be stirng, got 0"},
        {"a negative index", resolved<std::string>("{{initEnvironment[-3].x}}"),
         "! Environment Variable Key must be stirng, got -3"},
        {"one element", resolved<std::string>("{{initEnvironment}}"), R"(! KeyPath Invalid: ["initEnvironment"])"},
        {"no number", resolved<float>("{{initEnvironment.name}}"), "! Env unable to convert value Ann to Float"},
        {"no number for an optional", resolved<std::optional<float>>("{{initEnvironment.name}}"), ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.found, row.expected);
    }
}

TEST(ModelContext, AnAbsentValueOfTheEnvironmentStaysAbsent) {
    EXPECT_EQ(sample().resolve<std::optional<SharedText>>("{{initEnvironment.no text}}"), std::nullopt);
    EXPECT_EQ(sample().resolve<std::optional<std::string>>("{{initEnvironment.no text}}"), std::nullopt);
    EXPECT_EQ(sample().resolve<std::optional<std::string>>("{{initEnvironment.string}}"), "text");
    EXPECT_EQ(sample().resolve<std::optional<float>>("{{initEnvironment.none}}"), std::nullopt);
    EXPECT_EQ(sample().resolve<SharedText>("{{initEnvironment.no text}}"), "");
    static_assert(!std::convertible_to<std::vector<int>, EnvironmentValue>, "which has no text form");
}

TEST(ModelContext, PathsAreMadeOfTextsAndWholeNumbers) {
    EXPECT_EQ(jsonKey("deep"), JSONKey("deep"));
    EXPECT_EQ(jsonKey(std::string()), JSONKey(""));
    EXPECT_EQ(jsonKey(0), JSONKey(std::int64_t{0}));
    EXPECT_EQ(jsonKey(-1), JSONKey(std::int64_t{-1}));
    static_assert(!JSONSubscriptType<double>);
    const std::vector<JSONKey> path{jsonKey("items"), jsonKey(1), jsonKey("title")};
    EXPECT_EQ(ModelContext::getValueFrom(path, sample().model)->description(), "second");
}

TEST(ModelContext, WalksKeyPaths) {
    const JSON& model = sample().model;
    EXPECT_EQ(ModelContext::getValueFrom({}, model), &model) << "an empty path is the model";
    const std::vector<JSONKey> path{"deep", "a", "b", "c", std::int64_t{0}, std::int64_t{1}};
    ASSERT_NE(ModelContext::getValueFrom(path, model), nullptr);
    EXPECT_EQ(ModelContext::getValueFrom(path, model)->description(), "2");
    const std::vector<JSONKey> emptyKey{""};
    EXPECT_EQ(ModelContext::getValueFrom(emptyKey, model)->description(), "empty key");
    const std::vector<JSONKey> nowhere{"deep", std::int64_t{0}};
    EXPECT_EQ(ModelContext::getValueFrom(nowhere, model), nullptr);
}

TEST(ModelContext, ModelAndEnvironmentCanBeReplaced) {
    ModelContext model(JSON::parse(R"({"a": 1})"), {});
    model.model = JSON::parse(R"({"a": 2})");
    model.environment.emplace("b", 3);
    EXPECT_EQ(model.resolve<float>("{{initServerParam.a}}"), 2);
    EXPECT_EQ(model.resolve<float>("{{initEnvironment.b}}"), 3);
}

TEST(ModelContext, BracketsTheWrongWayRoundViolateAPrecondition) {
    const ThrowingPreconditions handler;
    // Wherever they are: components are taken apart before anything is looked up.
    for (const char* start : {"initServerParam.", "initServerParam.none.", "initEnvironment.none.", "none.", ""}) {
        for (const char* component : {"a]b[", "]a[0]", "][", "]1["}) {
            const std::string expression = "{{" + std::string(start) + component + ".x}}";
            SCOPED_TRACE(expression);
            try {
                static_cast<void>(sample().resolve<std::string>(expression));
                FAIL();
            } catch (const TavrinError& error) {
                EXPECT_EQ(error.kind, "Precondition");
                EXPECT_EQ(error.message, "']' before '[' in the expression component " + std::string(component));
            }
        }
    }
}

TEST(ModelContextDeathTest, AViolatedPreconditionEndsTheProcess) {
    EXPECT_DEATH(static_cast<void>(sample().resolve<std::string>("{{a]b[}}")), "precondition failed: .*a.b.");
}

}  // namespace
}  // namespace tavrin
