// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace tavrin {

/// Appends the fewest decimal digits that read back as the same number.
///
/// Decimal with at least ".0" while 1e-4 <= |x| <= 2^53 ("100000.0", "0.0001", "-0.0"), else with an exponent of at
/// least two digits ("1e+20", "5e-324"); "inf", "-inf", "nan". Independent of the locale.
void appendText(std::string& out, double value);
/// The same for a 32-bit number: its own fewest digits, decimal up to 2^24.
void appendText(std::string& out, float value);
void appendText(std::string& out, std::int64_t value);
void appendText(std::string& out, std::uint64_t value);

/// The text form of a number, see `appendText`; of an integer its decimal digits, with "-" before a negative one.
template <class T>
    requires(std::is_arithmetic_v<T> && !std::same_as<T, bool>)
[[nodiscard]] std::string toText(T value) {
    std::string text;
    if constexpr (std::floating_point<T>)
        appendText(text, value);
    else if constexpr (std::signed_integral<T>)
        appendText(text, static_cast<std::int64_t>(value));
    else
        appendText(text, static_cast<std::uint64_t>(value));
    return text;
}

/// The number that the whole of `text` stands for, correctly rounded; none when it is no number.
///
/// Optional sign; decimal with optional exponent (".5" and "5." too), hexadecimal ("0x1.8p3", the exponent may be left
/// out), "inf", "infinity" or "nan" in any letter case. Too large is infinite, too small is 0. No blanks.
[[nodiscard]] std::optional<double> doubleFromText(std::string_view text);
[[nodiscard]] std::optional<float> floatFromText(std::string_view text);

/// The double that is written as the 32-bit number is: 0.1 for 0.1f.
[[nodiscard]] double doubleOfSameText(float value);

/// The integer that the whole of `text` stands for: optional sign and decimal digits, in the range of `T`.
template <std::integral T>
    requires(!std::same_as<T, bool>)
[[nodiscard]] std::optional<T> intFromText(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    if constexpr (std::unsigned_integral<T>) {
        // from_chars takes no sign here, yet "-0" is in range.
        const bool negative = text.starts_with('-');
        if (negative) text.remove_prefix(1);
        if (negative && text.find_first_not_of('0') != std::string_view::npos) return std::nullopt;
    }
    T value{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return value;
}

/// `value` as an integer when it is a whole number in the range of `std::int64_t`: 3.0 and -0.0, not 2.5 or 2^63.
[[nodiscard]] std::optional<std::int64_t> exactInteger(double value);

}  // namespace tavrin
