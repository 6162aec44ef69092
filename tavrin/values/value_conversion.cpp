// SPDX-License-Identifier: MIT
#include "tavrin/values/value_conversion.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tavrin {

float singlePrecision(double value) {
    // Rounding a double and rounding its shortest text differ only where the double lies exactly between two floats.
    constexpr std::uint64_t droppedBits = (std::uint64_t{1} << 29) - 1;
    constexpr std::uint64_t midpoint = std::uint64_t{1} << 28;
    const bool isMidpoint = (std::bit_cast<std::uint64_t>(value) & droppedBits) == midpoint;
    const bool isSubnormal = std::abs(value) < double{std::numeric_limits<float>::min()};
    if (isMidpoint || isSubnormal) return floatFromText(toText(value)).value_or(static_cast<float>(value));
    return static_cast<float>(value);
}

}  // namespace tavrin
