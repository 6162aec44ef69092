// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/options.h"

namespace tavrin::cli {

/// A command line taken apart, its values not yet judged.
struct Command {
    Verb verb = Verb::render;
    /// What stands on the command line besides options.
    std::vector<std::string> operands;
    /// The value of each option that is given, by its long name; a flag's is empty.
    std::map<std::string_view, std::string> values;

    /// The value of an option; null where it is not given.
    [[nodiscard]] const std::string* find(std::string_view option) const {
        const auto found = values.find(option);
        return found == values.end() ? nullptr : &found->second;
    }
};

/// What `--help` or `--version` print.
struct Information {
    std::string text;
};

/// Takes the words behind the program's name apart. Throws `UsageError`.
[[nodiscard]] std::variant<Command, Information> parseCommandLine(std::span<const std::string> words);

}  // namespace tavrin::cli
