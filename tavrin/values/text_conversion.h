// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tavrin/json/coding.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/memory/shared_text.h"
#include "tavrin/platform/foundation/memory/short_text.h"

namespace tavrin {

/// The raw strings of a keyword enumeration, specialised once for each:
/// `typeName`, `raw` (the raw values, in the order of the cases, which count from 0) and, for the type of a property,
/// `defaultCase`.
template <class Enum>
struct Keywords;

/// What the specialisation derives from where the raw values are the names of the cases.
template <class Enum>
struct NamedKeywords {
    static constexpr const auto& raw = enumeratorNames<Enum>;
};

/// An enumeration of keywords: built from text, which must be exactly one of the raw values, and written as that.
template <class Enum>
concept StringConvertible = std::is_enum_v<Enum> && requires {
    Keywords<Enum>::raw;
};

template <StringConvertible Enum>
[[nodiscard]] constexpr std::string_view rawValue(Enum value) {
    return Keywords<Enum>::raw[indexOf(value)];
}

/// The case whose raw value is exactly `text`.
template <StringConvertible Enum>
[[nodiscard]] std::optional<Enum> fromRawValue(std::string_view text) {
    const std::size_t index = indexOfText<Keywords<Enum>::raw>(text);
    return index < Keywords<Enum>::raw.size() ? std::optional(static_cast<Enum>(index)) : std::nullopt;
}

/// How a property's type is built from text and written as text, its fallback and its names, the second one in words
/// for messages: `static std::optional<T> fromText(std::string_view)`, `static std::string description(const T&)`,
/// `static T defaultValue()`, `static std::string typeName()` and `static std::string readableName()`.
template <class T>
struct LosslessStringConvertible;

/// What a property may be: a type with a fallback for what cannot be built.
template <class T>
concept LosslessDefault = requires {
    { LosslessStringConvertible<T>::defaultValue() } -> std::same_as<T>;
};

/// A text; the library's own records share it.
template <class T>
    requires(std::same_as<T, SharedText> || std::same_as<T, std::string>)
struct LosslessStringConvertible<T> {
    static std::optional<T> fromText(std::string_view text) { return T(text); }
    static std::string description(const T& value) { return std::string(value); }
    static T defaultValue() { return {}; }
    static std::string typeName() { return "String"; }
    static std::string readableName() { return "a string"; }
};

template <>
struct LosslessStringConvertible<bool> {
    static std::optional<bool> fromText(std::string_view text) {
        if (text == "true") return true;
        if (text == "false") return false;
        return std::nullopt;
    }
    static std::string description(bool value) { return value ? "true" : "false"; }
    static bool defaultValue() { return false; }
    static std::string typeName() { return "Bool"; }
    static std::string readableName() { return "a boolean"; }
};

template <std::integral T>
    requires(!std::same_as<T, bool>)
struct LosslessStringConvertible<T> {
    static std::optional<T> fromText(std::string_view text) { return intFromText<T>(text); }
    static std::string description(T value) { return toText(value); }
    static T defaultValue() { return 0; }
    static std::string typeName() {
        if constexpr (sizeof(T) == sizeof(std::int64_t)) return std::signed_integral<T> ? "Int" : "UInt";
        return (std::signed_integral<T> ? "Int" : "UInt") + toText(8 * sizeof(T));
    }
    static std::string readableName() { return "a whole number"; }
};

template <std::floating_point T>
struct LosslessStringConvertible<T> {
    static std::optional<T> fromText(std::string_view text) {
        if constexpr (std::same_as<T, float>) {
            return floatFromText(text);
        } else {
            return doubleFromText(text);
        }
    }
    static std::string description(T value) { return toText(value); }
    static T defaultValue() { return 0; }
    static std::string typeName() { return std::same_as<T, float> ? "Float" : "Double"; }
    static std::string readableName() { return "a number"; }
};

template <StringConvertible Enum>
struct LosslessStringConvertible<Enum> {
    static std::optional<Enum> fromText(std::string_view text) { return fromRawValue<Enum>(text); }
    static std::string description(Enum value) { return std::string(rawValue(value)); }
    static Enum defaultValue() { return Keywords<Enum>::defaultCase; }
    static std::string typeName() { return std::string(Keywords<Enum>::typeName); }
    static std::string readableName() { return "a keyword"; }
};

/// An optional is always built: it is absent where its own type cannot be.
template <class T>
struct LosslessStringConvertible<std::optional<T>> {
    static std::optional<std::optional<T>> fromText(std::string_view text) {
        return std::optional<std::optional<T>>(std::in_place, LosslessStringConvertible<T>::fromText(text));
    }
    static std::string description(const std::optional<T>& value) {
        return value ? LosslessStringConvertible<T>::description(*value) : std::string();
    }
    static std::optional<T> defaultValue() { return std::nullopt; }
    static std::string typeName() { return "Optional<" + LosslessStringConvertible<T>::typeName() + ">"; }
    static std::string readableName() { return LosslessStringConvertible<T>::readableName(); }
};

/// An optional of some type.
template <class T>
concept DSLOptional = requires {
    typename T::value_type;
    requires std::same_as<T, std::optional<typename T::value_type>>;
};

/// Throws dataCorrupted for a word that is none of `words`, and says which one may have been meant.
[[noreturn]] void failUnknownKeyword(const Decoder& decoder, std::string_view type,
                                     std::span<const std::string_view> words);

/// A keyword where no conversion applies: exactly one of the raw values, anything else is refused.
template <StringConvertible Enum>
struct Coding<Enum> {
    static Enum decode(const Decoder& decoder) {
        decoder.require(JSONKind::string);
        if (const std::optional<Enum> found = fromRawValue<Enum>(decoder.value().string())) return *found;
        failUnknownKeyword(decoder, Keywords<Enum>::typeName, Keywords<Enum>::raw);
    }
    static void encode(Enum value, JSONWriter& writer) { writer.value(rawValue(value)); }
};

}  // namespace tavrin
