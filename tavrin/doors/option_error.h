// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tavrin {

/// What is wrong with an option.
enum class OptionFault : unsigned char {
    name,   ///< there is none of that name
    type,   ///< its value is of a type that it does not take
    value,  ///< its value is none of those that it takes, or does not go with another option
};

/// An option that cannot be followed. The message names it as the door spells it.
struct OptionError : std::runtime_error {
    OptionFault fault;
    /// As the door spells it.
    std::string option;

    OptionError(OptionFault fault, std::string option, const std::string& message)
        : std::runtime_error(message), fault(fault), option(std::move(option)) {}
};

}  // namespace tavrin
