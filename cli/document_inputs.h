// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "cli/arguments.h"
#include "cli/project/operands.h"
#include "cli/project/paired_command.h"

namespace tavrin::cli {

/// What a command works on.
struct DocumentInputs {
    DocumentArguments common;
    std::vector<Operand> operands;      ///< the documents, one for each of the common arguments' inputs
    std::vector<PairedCommand> paired;  ///< what the command is for each of them
};

/// Finds a command's documents, and pairs each with what lies beside it. What is wrong there is the fault of its
/// document where there are others, too. Throws `UsageError`, `OptionError`, `SettingsError`, and `IOError` for a
/// folder that cannot be read.
[[nodiscard]] DocumentInputs readInputs(const Command& command);

/// What a command says may be fetched. Throws `UsageError` and `OptionError`.
[[nodiscard]] FetchPolicy readFetchPolicy(const Command& command);

}  // namespace tavrin::cli
