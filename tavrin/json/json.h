// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "tavrin/json/coding.h"
#include "tavrin/platform/foundation/memory/shared_text.h"

namespace tavrin {

class JSON;

/// The elements of a JSON array.
using JSONArray = pool::Vector<JSON>;

template <class T>
concept Arithmetic = std::is_arithmetic_v<T>;

/// A dictionary of a JSON value. Members keep the order in which they were written.
class JSONObject {
public:
    using Member = std::pair<SharedText, JSON>;
    using Members = pool::Vector<Member>;

    JSONObject() = default;
    /// Of members with the same key the first one holds.
    explicit JSONObject(Members members);

    [[nodiscard]] const Members& members() const { return members_; }
    /// The member of that key, or null.
    [[nodiscard]] const JSON* find(std::string_view key) const;

private:
    Members members_;
    pool::Vector<std::uint32_t> byKey_;  // indices in the order of their keys; empty for small dictionaries
};

/// A dynamic JSON value: what a model document is decoded into.
class JSON {
public:
    using Value =
        std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, SharedText, JSONArray, JSONObject>;

    /// Null.
    JSON() : value_(nullptr) {}
    JSON(Value value) : value_(std::move(value)) {}     // NOLINT(google-explicit-constructor): any value is JSON
    JSON(SharedText text) : value_(std::move(text)) {}  // NOLINT(google-explicit-constructor)
    JSON(const std::string& text) : value_(SharedText(text)) {}  // NOLINT(google-explicit-constructor)
    JSON(const char* text) : value_(SharedText(text)) {}         // NOLINT(google-explicit-constructor)
    /// A boolean or a number of any type.
    template <Arithmetic Scalar>
    JSON(Scalar scalar) : value_(widest(scalar)) {}  // NOLINT(google-explicit-constructor)

    /// Parses a text. Throws `DecodingError` (dataCorrupted) where it is not JSON.
    static JSON parse(std::string_view text);

    /// The untyped value.
    [[nodiscard]] const Value& object() const { return value_; }
    [[nodiscard]] Value& object() { return value_; }

    /// The member of a dictionary; null when this is no dictionary or has no such key.
    [[nodiscard]] const JSON* find(std::string_view key) const;
    /// The element of an array; null when this is no array or the index is out of range.
    [[nodiscard]] const JSON* find(std::int64_t index) const;

    /// The ordinary text form: a string as it stands, numbers as digits, "true", "false", "null"; arrays and
    /// dictionaries as compact JSON.
    [[nodiscard]] std::string description() const;

private:
    template <class Scalar>
    using Widest = std::conditional_t<
        std::same_as<Scalar, bool>, bool,
        std::conditional_t<std::floating_point<Scalar>, double,
                           std::conditional_t<std::signed_integral<Scalar>, std::int64_t, std::uint64_t>>>;

    template <class Scalar>
    static Widest<Scalar> widest(Scalar scalar) {
        if constexpr (std::same_as<Scalar, float>) return doubleOfSameText(scalar);
        return static_cast<Widest<Scalar>>(scalar);
    }

    Value value_;
};

template <>
struct Coding<JSON> {
    static JSON decode(const Decoder& decoder);
    static void encode(const JSON& value, JSONWriter& writer);
};

}  // namespace tavrin
