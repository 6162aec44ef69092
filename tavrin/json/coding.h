// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "tavrin/json/decoder.h"
#include "tavrin/platform/foundation/memory/shared_text.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {

/// How a type is read from and written to JSON: `static T decode(const Decoder&)`, which throws a `DecodingError`, and
/// `static void encode(const T&, JSONWriter&)`.
template <class T>
struct Coding;

template <class T>
[[nodiscard]] T decode(const Decoder& decoder) {
    return Coding<T>::decode(decoder);
}
template <class T>
void encode(const T& value, JSONWriter& writer) {
    Coding<T>::encode(value, writer);
}

template <class T>
    requires(std::same_as<T, SharedText> || std::same_as<T, std::string>)
struct Coding<T> {
    static T decode(const Decoder& decoder) {
        decoder.require(JSONKind::string);
        return T(decoder.value().string());
    }
    static void encode(const T& value, JSONWriter& writer) { writer.value(std::string_view(value)); }
};

template <>
struct Coding<bool> {
    static bool decode(const Decoder& decoder) {
        decoder.require(JSONKind::boolean);
        return decoder.value().boolean();
    }
    static void encode(bool value, JSONWriter& writer) { writer.value(value); }
};

template <std::integral T>
    requires(!std::same_as<T, bool>)
struct Coding<T> {
    static T decode(const Decoder& decoder) {
        if (decoder.kind() == JSONKind::integer) {
            if (const std::int64_t value = decoder.value().integer(); std::in_range<T>(value))
                return static_cast<T>(value);
        } else if (decoder.kind() == JSONKind::unsigned_) {
            if (const std::uint64_t value = decoder.value().unsignedInteger(); std::in_range<T>(value))
                return static_cast<T>(value);
        } else if (decoder.kind() != JSONKind::floating) {
            decoder.failTypeMismatch("a number");
        }
        decoder.failDataCorrupted("the number is no whole number in range");
    }
    static void encode(T value, JSONWriter& writer) {
        writer.value(static_cast<std::conditional_t<std::signed_integral<T>, std::int64_t, std::uint64_t>>(value));
    }
};

template <std::floating_point T>
struct Coding<T> {
    static T decode(const Decoder& decoder) {
        switch (decoder.kind()) {
            case JSONKind::integer: return static_cast<T>(decoder.value().integer());
            case JSONKind::unsigned_: return static_cast<T>(decoder.value().unsignedInteger());
            case JSONKind::floating: return static_cast<T>(decoder.value().floating());
            case JSONKind::string:
                if (decoder.options().convertsNonConformingFloats) {
                    const std::string_view text = decoder.value().string();
                    if (text == "infinity") return std::numeric_limits<T>::infinity();
                    if (text == "-infinity") return -std::numeric_limits<T>::infinity();
                    if (text == "nan") return std::numeric_limits<T>::quiet_NaN();
                }
                [[fallthrough]];
            default: decoder.failTypeMismatch("a number");
        }
    }
    /// Numbers that JSON has no form for become the strings "infinity", "-infinity" and "nan".
    static void encode(T value, JSONWriter& writer) {
        if constexpr (std::same_as<T, float>) {
            writer.value(doubleOfSameText(value));
        } else {
            writer.value(value);
        }
    }
};

template <class T>
struct Coding<std::optional<T>> {
    static std::optional<T> decode(const Decoder& decoder) {
        if (decoder.kind() == JSONKind::null) return std::nullopt;
        return tavrin::decode<T>(decoder);
    }
    static void encode(const std::optional<T>& value, JSONWriter& writer) {
        if (!value) return static_cast<void>(writer.value(nullptr));
        tavrin::encode(*value, writer);
    }
};

template <class T>
struct Coding<std::vector<T>> {
    static std::vector<T> decode(const Decoder& decoder) {
        decoder.require(JSONKind::array);
        std::vector<T> values;
        values.reserve(decoder.value().size());
        std::size_t index = 0;
        for (JSONElement::Walk walk(decoder.value()); walk.next(); ++index)
            values.push_back(tavrin::decode<T>(decoder.element(index, walk.value())));
        return values;
    }
    static void encode(const std::vector<T>& values, JSONWriter& writer) {
        writer.beginArray();
        for (const T& value : values) tavrin::encode(value, writer);
        writer.endArray();
    }
};

}  // namespace tavrin
