// SPDX-License-Identifier: MIT
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include <gtest/gtest.h>

#include "tavrin/engine/json_decoder.h"
#include "tavrin/engine/record_types.h"

// Documents built in code: what every property takes without a word about its wrapper.

namespace tavrin {
namespace {

template <class T>
struct WithoutOptional {
    using Type = T;
};
template <class T>
struct WithoutOptional<std::optional<T>> {
    using Type = T;
};

/// Whether a property can be given what stands for a `T` in code.
template <class Property>
struct TakesWhatItHolds : std::false_type {};

template <class T>
struct TakesWhatItHolds<LosslessDSLValue<T>> {
    using Bare = typename WithoutOptional<T>::Type;

    template <class... Values>
    static constexpr bool takes = (std::convertible_to<Values, LosslessDSLValue<T>> && ...);

    static constexpr bool takesItsOwn() {
        if constexpr (std::same_as<Bare, SharedText>)
            return takes<std::string, std::string&, const std::string&, std::string_view, const char*, const char(&)[5],
                         SharedText>;
        else if constexpr (std::same_as<Bare, bool>)
            return takes<bool, const bool&, const char*>;
        else if constexpr (std::is_arithmetic_v<Bare>)
            return takes<int, std::int64_t, std::size_t, float, double, const double&, const char*>;
        else
            return std::is_enum_v<Bare> && takes<Bare, const Bare&, const char*>;
    }
    static constexpr bool takesNothing() { return !DSLOptional<T> || takes<std::nullopt_t, std::optional<Bare>>; }

    static constexpr bool value = takesItsOwn() && takesNothing() && takes<T, const T&, Expr>;
};

template <class T>
struct TakesWhatItHolds<DSLValue<T>>
    : std::bool_constant<std::convertible_to<T, DSLValue<T>> && std::convertible_to<const T&, DSLValue<T>> &&
                         std::convertible_to<typename WithoutOptional<T>::Type, DSLValue<T>>> {};
template <>
struct TakesWhatItHolds<DSLValue<Node>>
    : std::bool_constant<std::convertible_to<Node, DSLValue<Node>> && std::convertible_to<TextNode, DSLValue<Node>> &&
                         std::convertible_to<const VStackNode&, DSLValue<Node>>> {};

template <class T>
struct TakesWhatItHolds<DSLValueWithDefault<std::vector<T>>>
    : std::bool_constant<std::convertible_to<std::vector<T>, DSLValueWithDefault<std::vector<T>>> &&
                         std::convertible_to<std::initializer_list<T>, DSLValueWithDefault<std::vector<T>>>> {};

template <class Record, std::size_t... indices>
constexpr bool allTake(std::index_sequence<indices...>) {
    return (TakesWhatItHolds<FieldValue<Record, indices>>::value && ...);
}

template <class... Records>
constexpr bool everyPropertyTakesWhatItHolds(TypeList<Records...>) {
    return (allTake<Records>(std::make_index_sequence<fieldCount<Records>>()) && ...);
}

static_assert(everyPropertyTakesWhatItHolds(NodeRecords{}));
static_assert(everyPropertyTakesWhatItHolds(ModifierRecords{}));
static_assert(everyPropertyTakesWhatItHolds(PartRecords{}));

template <class T>
using Value = LosslessDSLValue<T>;

static_assert(!std::convertible_to<std::string, Value<float>>, "only literals are read");
static_assert(!std::convertible_to<AlignmentDSL, Value<std::optional<HorizontalAlignmentDSL>>>);
static_assert(!std::convertible_to<AlignmentDSL, Value<std::optional<float>>>, "a keyword is no number");
static_assert(!std::convertible_to<TextNode, DSLValue<ColorNode>>);

TEST(BuiltInCode, NodesAreWrittenAsTheyRead) {
    const std::string title = "Rain";
    const std::string_view place = std::string_view("Madrid, Spain").substr(0, 6);
    const Node accent = ColorNode{.value = "#FF8800", .dark = std::string("#FFB340")};
    const struct {
        const char* why;
        Node node;
        const char* json;
    } rows[] = {
        {"a text", TextNode{.content = title, .fontSize = 12, .fontWeight = FontWeight::bold},
         R"({"type":"text","content":"Rain","fontSize":12,"fontWeight":"bold","modifiers":[]})"},
        {"a part of one", TextNode{.content = place}, R"({"type":"text","content":"Madrid","modifiers":[]})"},
        {"braces in code are no expression", TextNode{.content = std::string("{{a}}")},
         R"({"type":"text","content":"{{a}}","modifiers":[]})"},
        {"an expression", TextNode{.content = Expr{"{{initServerParam.a}}"}},
         R"({"type":"text","content":"{{initServerParam.a}}","modifiers":[]})"},
        {"a column",
         VStackNode{.spacing = 2.5,
                    .alignment = HorizontalAlignmentDSL::trailing,
                    .modifiers = {PaddingModifier{.edges = {EdgeDSL::top, EdgeDSL::leading}, .length = 4},
                                  OpacityModifier{.opacity = 0.5}},
                    .children = {SpacerNode{}, EmptyViewNode{}}},
         R"({"type":"vstack","spacing":2.5,"alignment":"trailing","modifiers":[)"
         R"({"type":"padding","edges":["top","leading"],"length":4},{"type":"opacity","opacity":0.5}],)"
         R"("children":[{"type":"spacer","modifiers":[]},{"type":"emptyView","modifiers":[]}]})"},
        {"one child", ZStackNode{.children = {accent}},
         R"({"type":"zstack","modifiers":[],"children":[{"type":"color","value":"#FF8800","dark":"#FFB340","modifiers":[]}]})"},
        {"a link", LinkNode{.url = "a:b", .view = TextNode{.content = "x"}},
         R"({"type":"link","url":"a:b","view":{"type":"text","content":"x","modifiers":[]},"modifiers":[]})"},
        {"a ring",
         ProgressNode{.style = ProgressNode::Style::circular,
                      .value = 0.25F,
                      .color = ColorNode{.value = "#FF8800"},
                      .lineWidth = 3,
                      .flip = true},
         R"({"type":"progressView","modifiers":[],"style":"circular","value":0.25,)"
         R"("color":{"value":"#FF8800","modifiers":[]},"lineWidth":3,"flip":true})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(DSLJSONEncoder().encode(row.node), row.json);
    }
}

TEST(BuiltInCode, PropertiesAreAssigned) {
    TextNode text;
    text.content = std::string("a");
    EXPECT_EQ(text.content.wrappedValue(), "a");
    text.content = std::string_view("b");
    EXPECT_EQ(text.content.wrappedValue(), "b");
    text.fontWeight = FontWeight::semibold;
    EXPECT_EQ(text.fontWeight.wrappedValue(), FontWeight::semibold);
    text.fontWeight = std::nullopt;
    EXPECT_EQ(text.fontWeight.wrappedValue(), std::nullopt);
    CircleNode circle;
    circle.fillColor = ColorNode{.value = "#102030"};
    EXPECT_EQ(circle.fillColor.wrappedValue->value.wrappedValue(), "#102030");
    circle.fillColor = std::nullopt;
    EXPECT_FALSE(circle.fillColor.wrappedValue.has_value());
    const VStackNode copy{.children = {text}};
    VStackNode other;
    other = copy;
    EXPECT_EQ(other, copy);
}

}  // namespace
}  // namespace tavrin
