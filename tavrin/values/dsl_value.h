#pragma once

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "tavrin/values/model_context.h"
#include "tavrin/values/value_conversion.h"

namespace tavrin {

/// A property that the document gives as a literal of any scalar type or as an expression `{{…}}` over the model.
template <class T>
class LosslessDSLValue {
public:
    /// An expression as it is written, braces included.
    struct Expr {
        std::string text;
        friend bool operator==(const Expr&, const Expr&) = default;
    };
    /// Either a literal or resolved value, or an expression that is not resolved yet.
    using Box = std::variant<T, Expr>;

    LosslessDSLValue() : box(std::in_place_index<0>, LosslessStringConvertible<T>::defaultValue()) {}
    /// Holds a value; a string stays a string, also one in braces.
    LosslessDSLValue(T wrappedValue)  // NOLINT(google-explicit-constructor): a value is a property in code
        : box(std::in_place_index<0>, std::move(wrappedValue)) {}
    LosslessDSLValue(Expr expr) : box(std::move(expr)) {}  // NOLINT(google-explicit-constructor)

    /// A literal in code: the type built from the literal's text, its default where that fails.
    template <class Literal>
        requires((std::is_arithmetic_v<Literal> || std::same_as<Literal, const char*>)&&!std::same_as<Literal, T>)
    LosslessDSLValue(Literal literal)  // NOLINT(google-explicit-constructor)
        : box(std::in_place_index<0>,
              fromText<T>(literalText(literal)).value_or(LosslessStringConvertible<T>::defaultValue())) {}

    /// Built from text: an expression, or a value of the type; none where the type cannot be built.
    static std::optional<LosslessDSLValue> fromText(std::string_view text) {
        if (isExpression(text)) return LosslessDSLValue(Expr{std::string(text)});
        if (std::optional<T> value = tavrin::fromText<T>(text)) return LosslessDSLValue(*std::move(value));
        return std::nullopt;
    }

    [[nodiscard]] bool resolved() const { return box.index() == 0; }

    /// The value. An expression reads as the type built from its own text, the type's default where that fails.
    [[nodiscard]] T wrappedValue() const {
        if (const T* value = std::get_if<0>(&box)) return *value;
        return tavrin::fromText<T>(std::get<1>(box).text).value_or(LosslessStringConvertible<T>::defaultValue());
    }
    void setWrappedValue(T value) { box.template emplace<0>(std::move(value)); }

    /// The value that the expression has in a model; a value that is resolved already. Throws `ModelContextError`.
    [[nodiscard]] T resolve(const ModelContext& model) const {
        if (const T* value = std::get_if<0>(&box)) return *value;
        return model.resolve<T>(std::get<1>(box).text);
    }
    /// Replaces an expression by the value it resolves to.
    void bindModel(const ModelContext& model) {
        if (!resolved()) setWrappedValue(resolve(model));
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
    friend bool operator==(const DSLValue&, const DSLValue&) = default;
};

/// A list that is empty where its key is missing. Copies share it.
template <class T>
class DSLValueWithDefault {
public:
    DSLValueWithDefault() = default;
    DSLValueWithDefault(T value)  // NOLINT(google-explicit-constructor): a list is a property in code
        : value_(value.empty() ? nullptr : std::make_shared<const T>(std::move(value))) {}

    [[nodiscard]] const T& wrappedValue() const {
        static const T defaultValue{};
        return value_ ? *value_ : defaultValue;
    }

    friend bool operator==(const DSLValueWithDefault& a, const DSLValueWithDefault& b) {
        return a.value_ == b.value_ || a.wrappedValue() == b.wrappedValue();
    }

private:
    std::shared_ptr<const T> value_;
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
        const bool isText = literal.kind() == JSONKind::string;
        if (isText && isExpression(literal.string()))
            return typename LosslessDSLValue<T>::Expr{std::string(literal.string())};
        if (std::optional<T> value = convert<T>(literal)) return *std::move(value);
        const std::string type = LosslessStringConvertible<T>::typeName();
        if (isText) decoder.failConversion(literal.string(), type);
        decoder.failTypeMismatch(type + " or an expression");
    }
    static void encode(const LosslessDSLValue<T>& value, JSONWriter& writer) {
        if (const T* held = std::get_if<0>(&value.box)) {
            tavrin::encode(*held, writer);
        } else {
            writer.value(std::get<1>(value.box).text);
        }
    }
};

template <class T>
struct Coding<DSLValue<T>> {
    static DSLValue<T> decode(const Decoder& decoder) { return {tavrin::decode<T>(decoder)}; }
    static void encode(const DSLValue<T>& value, JSONWriter& writer) { tavrin::encode(value.wrappedValue, writer); }
};

template <class T>
struct Coding<DSLValueWithDefault<T>> {
    static DSLValueWithDefault<T> decode(const Decoder& decoder) { return tavrin::decode<T>(decoder); }
    static void encode(const DSLValueWithDefault<T>& value, JSONWriter& writer) {
        tavrin::encode(value.wrappedValue(), writer);
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
template <class Wrapper>
struct FieldCoding {
    static constexpr bool mayBeAbsent = false;
    static bool isLeftOut(const Wrapper&) { return false; }
    static void encode(const Wrapper& value, JSONWriter& writer) { tavrin::encode(value, writer); }
};

template <class T>
struct FieldCoding<LosslessDSLValue<std::optional<T>>> {
    using Wrapper = LosslessDSLValue<std::optional<T>>;
    static constexpr bool mayBeAbsent = true;
    static bool isLeftOut(const Wrapper& value) { return !value.wrappedValue().has_value(); }
    /// Written as it reads, so that an expression that reads as absent is left out.
    static void encode(const Wrapper& value, JSONWriter& writer) { tavrin::encode(*value.wrappedValue(), writer); }
};

template <class T>
struct FieldCoding<DSLValue<std::optional<T>>> {
    using Wrapper = DSLValue<std::optional<T>>;
    static constexpr bool mayBeAbsent = true;
    static bool isLeftOut(const Wrapper& value) { return !value.wrappedValue.has_value(); }
    static void encode(const Wrapper& value, JSONWriter& writer) { tavrin::encode(value, writer); }
};

template <class T>
struct FieldCoding<DSLValueWithDefault<T>> {
    using Wrapper = DSLValueWithDefault<T>;
    static constexpr bool mayBeAbsent = true;
    static bool isLeftOut(const Wrapper&) { return false; }
    static void encode(const Wrapper& value, JSONWriter& writer) { tavrin::encode(value, writer); }
};

}  // namespace tavrin
