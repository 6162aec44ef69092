// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "tavrin/json/json.h"
#include "tavrin/values/text_conversion.h"

// Lossless conversion of JSON scalars to a property's type. The rule is one: the scalar's ordinary text, from which the
// type is built. Numbers for numbers take the same result without the way through text.

namespace tavrin {

/// Whether a text is an expression: begins with "{{" and ends with "}}".
[[nodiscard]] constexpr bool isExpression(std::string_view text) {
    const std::size_t size = text.size();
    return size >= 2 && text[0] == '{' && text[1] == '{' && text[size - 2] == '}' && text[size - 1] == '}';
}

/// The single-precision number that a double's shortest decimal text reads as.
[[nodiscard]] float singlePrecision(double value);

template <class T>
[[nodiscard]] std::optional<T> fromText(std::string_view text) {
    return LosslessStringConvertible<T>::fromText(text);
}

/// Converts a number: a `std::int64_t`, `std::uint64_t` or `double`.
template <class T, class Number>
[[nodiscard]] std::optional<T> convertNumber(Number number) {
    if constexpr (DSLOptional<T>) {
        return std::optional<T>(std::in_place, convertNumber<typename T::value_type>(number));
    } else if constexpr (std::floating_point<T>) {
        if constexpr (std::same_as<T, float> && std::same_as<Number, double>) return singlePrecision(number);
        return static_cast<T>(number);
    } else if constexpr (std::integral<T> && !std::same_as<T, bool> && std::integral<Number>) {
        return std::in_range<T>(number) ? std::optional<T>(static_cast<T>(number)) : std::nullopt;
    } else {
        return fromText<T>(toText(number));
    }
}

template <class T>
[[nodiscard]] std::optional<T> convertBool(bool truth) {
    return fromText<T>(truth ? "true" : "false");
}

/// Converts a literal of the document; none for null, arrays, objects and what the type cannot be built from.
template <class T>
[[nodiscard]] std::optional<T> convert(const JSONElement& literal) {
    if (literal.isString()) return fromText<T>(literal.string());
    switch (literal.kind()) {
        case JSONKind::boolean: return convertBool<T>(literal.boolean());
        case JSONKind::integer: return convertNumber<T>(literal.integer());
        case JSONKind::unsigned_: return convertNumber<T>(literal.unsignedInteger());
        case JSONKind::floating: return convertNumber<T>(literal.floating());
        default: return std::nullopt;
    }
}

/// Converts a text of the model, which is shared where a text is asked for.
template <class T>
[[nodiscard]] std::optional<T> convertText(const SharedText& text) {
    if constexpr (std::convertible_to<const SharedText&, T>) return text;
    return fromText<T>(text);
}

/// Converts a value of the model; null, arrays and dictionaries go through their text form.
template <class T>
[[nodiscard]] std::optional<T> convert(const JSON& value) {
    const JSON::Value& untyped = value.object();
    if (const auto* text = std::get_if<SharedText>(&untyped)) return convertText<T>(*text);
    if (const auto* truth = std::get_if<bool>(&untyped)) return convertBool<T>(*truth);
    if (const auto* number = std::get_if<std::int64_t>(&untyped)) return convertNumber<T>(*number);
    if (const auto* number = std::get_if<std::uint64_t>(&untyped)) return convertNumber<T>(*number);
    if (const auto* number = std::get_if<double>(&untyped)) return convertNumber<T>(*number);
    return fromText<T>(value.description());
}

}  // namespace tavrin
