// SPDX-License-Identifier: MIT
#include "cli/completion.h"

#include "cli/options.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"

namespace tavrin::cli {

std::string completionScript(const std::vector<std::string>& operands) {
    if (operands.size() != 1) throw UsageError("`tavrin completion` takes one shell: bash, zsh or fish");
    switch (readWord("completion", operands.front(), shells)) {
        case 0: return bashCompletion();
        case 1: return zshCompletion();
        default: return fishCompletion();
    }
}

}  // namespace tavrin::cli
