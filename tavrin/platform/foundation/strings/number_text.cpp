// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/number_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "tavrin/platform/foundation/strings/ascii.h"

namespace tavrin {
namespace {

template <class Number>
void append(std::string& out, Number value, auto... format) {
    std::array<char, 32> digits;  // 2^53 with sign, or 17 digits with point and exponent
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value, format...);
    out.append(digits.data(), result.ptr);
}

template <std::floating_point Float>
void appendFloat(std::string& out, Float value) {
    constexpr Float largestDecimal = 1 / std::numeric_limits<Float>::epsilon() * 2;  // 2^53, 2^24
    constexpr Float smallestDecimal = static_cast<Float>(1e-4L);
    if (std::isnan(value)) {
        out += "nan";
        return;
    }
    const Float magnitude = std::abs(value);
    const bool decimal = magnitude == 0 || (magnitude >= smallestDecimal && magnitude <= largestDecimal);
    if (!decimal) {
        append(out, value, std::chars_format::scientific);
        return;
    }
    const std::size_t start = out.size();
    append(out, value, std::chars_format::fixed);
    if (out.find('.', start) == std::string::npos) out += ".0";
}

bool equalsInAnyCase(std::string_view text, std::string_view word) {
    return std::ranges::equal(text, word, {}, lowerCase);
}

/// Whether unsigned number text that is out of a floating point type's range is too large for it, not too small.
bool isTooLarge(std::string_view digits, bool hexadecimal) {
    const std::size_t mark = std::min(digits.find_first_of(hexadecimal ? "pP" : "eE"), digits.size());
    const std::string_view mantissa = digits.substr(0, mark);
    const std::string_view exponentText = mark < digits.size() ? digits.substr(mark + 1) : "0";
    const auto exponent = intFromText<std::int64_t>(exponentText);
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto firstDigit = static_cast<std::int64_t>(mantissa.find_first_not_of("0."));
    // In the base's powers; a digit behind the point has the point itself before it, which does not matter here.
    const std::int64_t magnitude = (point - firstDigit) * (hexadecimal ? 4 : 1);
    if (!exponent) return !exponentText.starts_with('-');
    return *exponent > -magnitude;
}

/// What unsigned decimal or (without its "0x") hexadecimal text stands for.
template <std::floating_point Float>
std::optional<Float> fromDigits(std::string_view digits, bool hexadecimal) {
    // from_chars would also take a sign and the words for infinity and not a number.
    const std::string_view allowed = hexadecimal ? "0123456789abcdefABCDEF." : "0123456789.";
    if (digits.empty() || allowed.find(digits.front()) == std::string_view::npos) return std::nullopt;
    Float value{};
    const char* const end = digits.data() + digits.size();
    const auto format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    const auto [stop, error] = std::from_chars(digits.data(), end, value, format);
    if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return isTooLarge(digits, hexadecimal) ? std::numeric_limits<Float>::infinity() : Float{0};
    return value;
}

template <std::floating_point Float>
std::optional<Float> floatingPointFromText(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::optional<Float> magnitude;
    if (equalsInAnyCase(text, "inf") || equalsInAnyCase(text, "infinity"))
        magnitude = std::numeric_limits<Float>::infinity();
    else if (equalsInAnyCase(text, "nan"))
        magnitude = std::numeric_limits<Float>::quiet_NaN();
    else if (text.starts_with("0x") || text.starts_with("0X"))
        magnitude = fromDigits<Float>(text.substr(2), true);
    else
        magnitude = fromDigits<Float>(text, false);
    if (magnitude && negative) return -*magnitude;
    return magnitude;
}

}  // namespace

void appendText(std::string& out, double value) { appendFloat(out, value); }
void appendText(std::string& out, float value) { appendFloat(out, value); }
void appendText(std::string& out, std::int64_t value) { append(out, value); }
void appendText(std::string& out, std::uint64_t value) { append(out, value); }

std::optional<double> doubleFromText(std::string_view text) { return floatingPointFromText<double>(text); }
std::optional<float> floatFromText(std::string_view text) { return floatingPointFromText<float>(text); }

double doubleOfSameText(float value) { return doubleFromText(toText(value)).value_or(double{value}); }

std::optional<std::int64_t> exactInteger(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!(value >= -limit && value < limit) || std::trunc(value) != value) return std::nullopt;
    return static_cast<std::int64_t>(value);
}

}  // namespace tavrin
