// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

// What belongs to the enumerators of an enumeration: their names, and values of any kind. Nothing here lists
// enumerators a second time without the compiler seeing that the list is complete.

namespace tavrin {

namespace detail {

/// An enumerator's name, taken from what compilers call a function; empty for a number that is none of the enumerators,
/// which they write in digits.
template <auto value>
consteval auto spelledEnumerator() {
    constexpr std::string_view function = __PRETTY_FUNCTION__;  // "… [… value = tavrin::NodeType::text]"
    constexpr std::string_view letters = "_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    constexpr std::size_t end = function.rfind(']');
    constexpr std::size_t begin = function.find_last_not_of(letters, end - 1) + 1;
    constexpr bool isName = function[begin] < '0' || function[begin] > '9';
    return isName ? function.substr(begin, end - begin) : std::string_view();
}

template <class Enum, std::size_t from = 0>
consteval std::size_t countEnumerators() {
    if constexpr (spelledEnumerator<static_cast<Enum>(from)>().empty()) {
        return from;
    } else {
        return countEnumerators<Enum, from + 1>();
    }
}

}  // namespace detail

/// How many enumerators an enumeration has. They must count from 0 without a gap, here and below.
template <class Enum>
inline constexpr std::size_t enumeratorCount = detail::countEnumerators<Enum>();

/// An enumerator's place among all.
template <class Enum>
    requires std::is_enum_v<Enum>
[[nodiscard]] constexpr std::size_t indexOf(Enum value) { return static_cast<std::size_t>(value); }

/// The names of the enumerators, in their order and as the source spells them.
template <class Enum>
inline constexpr auto enumeratorNames = []<std::size_t... index>(std::index_sequence<index...>) {
    return std::array{detail::spelledEnumerator<static_cast<Enum>(index)>()...};
}
(std::make_index_sequence<enumeratorCount<Enum>>());

template <class Enum>
    requires std::is_enum_v<Enum>
[[nodiscard]] constexpr std::string_view name(Enum value) { return enumeratorNames<Enum>[indexOf(value)]; }

/// The enumerator of that name.
template <class Enum>
[[nodiscard]] constexpr std::optional<Enum> enumeratorNamed(std::string_view name) {
    for (std::size_t i = 0; i < enumeratorCount<Enum>; ++i)
        if (enumeratorNames<Enum>[i] == name) return static_cast<Enum>(i);
    return std::nullopt;
}

/// All enumerators, in their order.
template <class Enum>
inline constexpr auto enumerators = []<std::size_t... index>(std::index_sequence<index...>) {
    return std::array{static_cast<Enum>(index)...};
}
(std::make_index_sequence<enumeratorCount<Enum>>());

/// A value for each enumerator, written as pairs in their order. One that is missing does not compile.
template <class Enum, class Value>
class EnumeratorTable {
public:
    using Rows = std::pair<Enum, Value>[enumeratorCount<Enum>];

    consteval EnumeratorTable(const Rows& rows)  // NOLINT(google-explicit-constructor): it is written as its rows
        : EnumeratorTable(rows, std::make_index_sequence<enumeratorCount<Enum>>()) {}

    [[nodiscard]] constexpr const Value& operator[](Enum value) const { return values_[indexOf(value)]; }
    /// The values alone, in the order of the enumerators.
    [[nodiscard]] constexpr const auto& values() const { return values_; }

private:
    template <std::size_t... index>
    consteval EnumeratorTable(const Rows& rows, std::index_sequence<index...>) : values_{rows[index].second...} {
        if (((indexOf(rows[index].first) != index) || ...)) throw "an enumerator is missing, or not in its place";
    }

    std::array<Value, enumeratorCount<Enum>> values_;
};

/// The enumerator of the same name in another enumeration; where there is none, it does not compile.
template <class To, class From>
[[nodiscard]] constexpr To namesake(From value) {
    constexpr auto namesakes = []<std::size_t... index>(std::index_sequence<index...>) {
        return std::array{enumeratorNamed<To>(enumeratorNames<From>[index]).value()...};
    }
    (std::make_index_sequence<enumeratorCount<From>>());
    return namesakes[indexOf(value)];
}

}  // namespace tavrin
