// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "cli/command_line.h"
#include "cli/options.h"

namespace tavrin::cli {

/// A setting of the server, its value not yet judged.
struct Setting {
    std::string name;        ///< as where it was found spells it: "--max-body", "TAVRIN_MAX_BODY", "max-body"
    std::string value;       ///< "true" of a flag that is given
    std::string place = {};  ///< "serve.toml:3:12: " of a file's, else empty
};

/// Settings by the long names of options, "--max-body".
using Settings = std::map<std::string_view, Setting>;

/// What an environment variable holds; null where there is none.
using Environment = std::function<const char*(const char* name)>;

/// The settings that are given to a verb's options, each from the first that has it: the command line; the environment,
/// "TAVRIN_MAX_BODY", where an empty value counts as none; the TOML file that --config names, "max-body". The file has
/// texts, numbers and booleans at its top and nothing else. Throws `UsageError` with file, line and column for one that
/// is not so, and `IOError` for one that cannot be read.
[[nodiscard]] Settings gatherSettings(const Command& command, const Environment& environment);

}  // namespace tavrin::cli
