// SPDX-License-Identifier: MIT
#include "cli/check_options.h"

#include <algorithm>

#include "cli/option_values.h"
#include "cli/several_options.h"
#include "cli/usage_error.h"

namespace tavrin::cli {

CheckOptions readCheckOptions(const Command& command, Size screen) {
    CheckOptions options;
    if (const std::string* format = command.find("--format"))
        options.format = enumerators<CheckFormat>[readWord("--format", *format, checkFormatWords)];
    options.fixes = command.find("--fix") != nullptr;
    options.isStrict = command.find("--strict") != nullptr;
    options.showsNotes = command.find("--notes") != nullptr;
    options.rooms = readRooms(command, screen);
    options.appearances = readAppearances(command, {Appearance::light, Appearance::dark});
    if (options.fixes && std::ranges::count(command.operands, "-") > 0)
        throw UsageError("--fix changes files; standard input (\"-\") is none");
    return options;
}

}  // namespace tavrin::cli
