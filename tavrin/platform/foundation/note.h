// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace tavrin {

/// What a number counts.
enum class Unit : unsigned char { none, points, degrees, seconds };

/// What authors should know of a field. The schema and the reference are made of it; nothing else reads it.
struct Note {
    std::string_view text;               ///< one sentence, with words of the language in backticks
    Unit unit = Unit::none;              ///< of a number
    std::optional<double> minimum = {};  ///< the least number that makes sense; smaller ones are read all the same
    std::optional<double> maximum = {};  ///< the greatest that does
    std::string_view defaultValue = {};  ///< what a missing key stands for, as JSON
    std::string_view absent = {};        ///< the same in words, where no value says it
    std::string_view example = {};       ///< a value, as JSON
};

}  // namespace tavrin
