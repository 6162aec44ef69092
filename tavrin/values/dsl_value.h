// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <concepts>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/memory/shared_text.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/values/model_context.h"
#include "tavrin/values/value_conversion.h"

namespace tavrin {

/// An expression as it is written, braces included.
struct Expr {
    std::string text;
};

/// The same, where the text stands elsewhere.
struct ExprText {
    std::string_view text;
};

/// Either a value or an expression that is not resolved yet. Hardly larger than the value: a record holds many of
/// these, and few are expressions.
template <LosslessDefault T>
class LosslessBox {
public:
    explicit LosslessBox(const T& value) : value_(value) {}
    explicit LosslessBox(T&& value) : value_(std::move(value)) {}
    explicit LosslessBox(ExprText expression)
        : value_(LosslessStringConvertible<T>::defaultValue()), expression_(expression.text) {}
    explicit LosslessBox(const Expr& expression) : LosslessBox(ExprText{expression.text}) {}

    /// Puts a value in place of what is held.
    void set(T value) {
        value_ = std::move(value);
        expression_ = SharedText();
    }
    /// The value, or null for an expression.
    [[nodiscard]] const T* value() const { return isExpression() ? nullptr : &value_; }
    [[nodiscard]] bool isExpression() const { return expression_.exists(); }
    /// The expression's text; empty for a value.
    [[nodiscard]] std::string_view expr() const { return expression_.view(); }

    friend bool operator==(const LosslessBox& a, const LosslessBox& b) {
        return a.isExpression() == b.isExpression() && (a.isExpression() ? a.expr() == b.expr() : a.value_ == b.value_);
    }

private:
    T value_;  // the type's default where an expression stands
    SharedText expression_;
};

/// What stands in code for a literal of the document: a number, a boolean or a string literal, unless it is a `T`.
template <class Literal, class T>
concept LiteralOf = (std::is_arithmetic_v<Literal> || std::same_as<Literal, const char*>)&&!std::same_as<Literal, T>;

/// A property that the document gives as a literal of any scalar type or as an expression `{{…}}` over the model.
template <LosslessDefault T>
class LosslessDSLValue {
public:
    using Box = LosslessBox<T>;

    LosslessDSLValue() : box(LosslessStringConvertible<T>::defaultValue()) {}
    /// Holds a value; a string stays a string, also one in braces.
    LosslessDSLValue(const T& wrappedValue) : box(wrappedValue) {}        // NOLINT(google-explicit-constructor)
    LosslessDSLValue(T&& wrappedValue) : box(std::move(wrappedValue)) {}  // NOLINT(google-explicit-constructor)
    LosslessDSLValue(const Expr& expr) : box(expr) {}                     // NOLINT(google-explicit-constructor)
    explicit LosslessDSLValue(ExprText expr) : box(expr) {}
    /// Holds a value of a type that is taken for the property's own wherever one is asked for: any text for a text, a
    /// keyword for an optional one.
    template <class Value>
        requires(!std::same_as<std::remove_cvref_t<Value>, LosslessDSLValue> &&
                 !std::same_as<std::remove_cvref_t<Value>, T> && !LiteralOf<std::decay_t<Value>, T> &&
                 std::convertible_to<Value, T>)
    LosslessDSLValue(Value&& value)  // NOLINT(google-explicit-constructor,bugprone-forwarding-reference-overload)
        : box(static_cast<T>(std::forward<Value>(value))) {}

    /// A literal in code: the type built from the literal's text, its default where that fails.
    template <LiteralOf<T> Literal>
    LosslessDSLValue(Literal literal)  // NOLINT(google-explicit-constructor)
        : box(tavrin::fromText<T>(literalText(literal)).value_or(LosslessStringConvertible<T>::defaultValue())) {}

    /// Built from text: an expression, or a value of the type; none where the type cannot be built.
    static std::optional<LosslessDSLValue> fromText(std::string_view text) {
        if (isExpression(text)) return LosslessDSLValue(ExprText{text});
        if (std::optional<T> value = tavrin::fromText<T>(text)) return LosslessDSLValue(*std::move(value));
        return std::nullopt;
    }

    [[nodiscard]] bool resolved() const { return !box.isExpression(); }

    /// The value. An expression reads as the type built from its own text, the type's default where that fails.
    [[nodiscard]] T wrappedValue() const {
        if (const T* value = box.value()) return *value;
        return tavrin::fromText<T>(box.expr()).value_or(LosslessStringConvertible<T>::defaultValue());
    }
    void setWrappedValue(T value) { box.set(std::move(value)); }

    /// The value that the expression has in a model; a value that is resolved already. Throws `ModelContextError`.
    [[nodiscard]] T resolve(const ModelContext& model) const {
        if (const T* value = box.value()) return *value;
        return model.resolve<T>(box.expr());
    }

    [[nodiscard]] std::string description() const { return LosslessStringConvertible<T>::description(wrappedValue()); }

    friend bool operator==(const LosslessDSLValue&, const LosslessDSLValue&) = default;

    Box box;

private:
    template <class Literal>
    static std::string literalText(Literal literal) {
        if constexpr (std::same_as<Literal, bool>) {
            return literal ? "true" : "false";
        } else if constexpr (std::is_arithmetic_v<Literal>) {
            return toText(literal);
        } else {
            return literal;
        }
    }
};

/// A plain value: decoded as it is, never an expression.
template <class T>
struct DSLValue {
    T wrappedValue{};

    DSLValue() = default;
    DSLValue(T value) : wrappedValue(std::move(value)) {}  // NOLINT(google-explicit-constructor)
    /// Holds what is taken for a `T` wherever one is asked for: a record for a node.
    template <class Value>
        requires(!std::same_as<std::remove_cvref_t<Value>, DSLValue> && std::convertible_to<Value, T>)
    DSLValue(Value&& value)  // NOLINT(google-explicit-constructor,bugprone-forwarding-reference-overload)
        : wrappedValue(std::forward<Value>(value)) {}
    /// The elements of a list.
    template <class Element>
        requires std::constructible_from<T, std::vector<Element>> DSLValue(std::initializer_list<Element> elements)
            : wrappedValue(std::vector<Element>(elements)) {}

        friend bool operator==(const DSLValue&, const DSLValue&) = default;
};

/// A type with a value that stands where its key is missing: a list is empty then.
template <class T>
concept DSLDefaultValueType = requires {
    typename T::value_type;
    requires std::same_as<T, std::vector<typename T::value_type>>;
};

/// A list that is empty where its key is missing. Copies share it.
template <DSLDefaultValueType List>
class DSLValueWithDefault {
    using T = typename List::value_type;

public:
    DSLValueWithDefault() = default;
    explicit DSLValueWithDefault(SharedArray<T> list) : list_(std::move(list)) {}
    // NOLINTNEXTLINE(google-explicit-constructor): a list is a property in code
    DSLValueWithDefault(const List& values)
        : list_(values.empty() ? SharedArray<T>() : SharedArray<T>::copyOf(values)) {}
    /// The elements, each of what is taken for one: records for nodes and modifiers.
    DSLValueWithDefault(std::initializer_list<T> values) : DSLValueWithDefault(List(values)) {}

    [[nodiscard]] std::span<const T> wrappedValue() const { return list_.span(); }

    friend bool operator==(const DSLValueWithDefault& a, const DSLValueWithDefault& b) {
        return std::ranges::equal(a.wrappedValue(), b.wrappedValue());
    }

private:
    SharedArray<T> list_;
};

/// A list from which elements that cannot be decoded are left out.
template <class T>
struct LossyDSLArrayValue {
    std::vector<T> wrappedValue;
    friend bool operator==(const LossyDSLArrayValue&, const LossyDSLArrayValue&) = default;
};

template <class T>
struct Coding<LosslessDSLValue<T>> {
    static LosslessDSLValue<T> decode(const Decoder& decoder) {
        const JSONElement& literal = decoder.value();
        if (literal.isString() && isExpression(literal.string()))
            return LosslessDSLValue<T>(ExprText{literal.string()});
        if (std::optional<T> value = convert<T>(literal)) return *std::move(value);
        fail(decoder);
    }
    static void encode(const LosslessDSLValue<T>& value, JSONWriter& writer) {
        if (const T* held = value.box.value()) {
            tavrin::encode(*held, writer);
        } else {
            writer.value(value.box.expr());
        }
    }

private:
    [[noreturn]] static void fail(const Decoder& decoder) {
        if (decoder.value().isString())
            decoder.failConversion(decoder.value().string(), LosslessStringConvertible<T>::typeName());
        decoder.failTypeMismatch(LosslessStringConvertible<T>::readableName() + " or an expression");
    }
};

template <class T>
struct Coding<DSLValue<T>> {
    static DSLValue<T> decode(const Decoder& decoder) { return tavrin::decode<T>(decoder); }
    static void encode(const DSLValue<T>& value, JSONWriter& writer) { tavrin::encode(value.wrappedValue, writer); }
};

template <class T>
struct Coding<DSLValueWithDefault<std::vector<T>>> {
    static DSLValueWithDefault<std::vector<T>> decode(const Decoder& decoder) {
        decoder.require(JSONKind::array);
        JSONElement::Walk walk(decoder.value());
        std::size_t index = 0;
        return DSLValueWithDefault<std::vector<T>>(SharedArray<T>::generate(decoder.value().size(), [&] {
            walk.next();
            return tavrin::decode<T>(decoder.element(index++, walk.value()));
        }));
    }
    static void encode(const DSLValueWithDefault<std::vector<T>>& value, JSONWriter& writer) {
        writer.beginArray();
        for (const T& element : value.wrappedValue()) tavrin::encode(element, writer);
        writer.endArray();
    }
};

template <class T>
struct Coding<LossyDSLArrayValue<T>> {
    static LossyDSLArrayValue<T> decode(const Decoder& decoder) {
        decoder.require(JSONKind::array);
        LossyDSLArrayValue<T> list;
        std::size_t index = 0;
        for (JSONElement::Walk walk(decoder.value()); walk.next(); ++index) {
            try {
                list.wrappedValue.push_back(tavrin::decode<T>(decoder.element(index, walk.value())));
            } catch (const TavrinError& error) {
                if (error.kind == "Budget") throw;
            } catch (const PlacedError&) {  // the element is left out, by this list's definition
            }
        }
        return list;
    }
    static void encode(const LossyDSLArrayValue<T>& value, JSONWriter& writer) {
        tavrin::encode(value.wrappedValue, writer);
    }
};

/// How a property of some wrapper stands in its record's JSON object: whether its key may be absent, and when it is
/// left out.
struct PlainFieldCoding {
    static constexpr bool mayBeAbsent = false;
    template <class Wrapper>
    static bool isLeftOut(const Wrapper&) {
        return false;
    }
    template <class Wrapper>
    static void encode(const Wrapper& value, JSONWriter& writer) {
        tavrin::encode(value, writer);
    }
};

template <class Wrapper>
struct FieldCoding : PlainFieldCoding {};

template <class T>
struct FieldCoding<LosslessDSLValue<std::optional<T>>> {
    using Wrapper = LosslessDSLValue<std::optional<T>>;
    static constexpr bool mayBeAbsent = true;
    static bool isLeftOut(const Wrapper& value) { return !value.wrappedValue().has_value(); }
    /// Written as it reads, so that an expression that reads as absent is left out.
    static void encode(const Wrapper& value, JSONWriter& writer) { tavrin::encode(*value.wrappedValue(), writer); }
};

template <class T>
struct FieldCoding<DSLValue<std::optional<T>>> : PlainFieldCoding {
    static constexpr bool mayBeAbsent = true;
    static bool isLeftOut(const DSLValue<std::optional<T>>& value) { return !value.wrappedValue.has_value(); }
};

template <class T>
struct FieldCoding<DSLValueWithDefault<T>> : PlainFieldCoding {
    static constexpr bool mayBeAbsent = true;
};

}  // namespace tavrin
