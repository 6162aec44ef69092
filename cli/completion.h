// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrin::cli {

/// The script that the one operand of `tavrin completion` asks for. Throws `UsageError`.
[[nodiscard]] std::string completionScript(const std::vector<std::string>& operands);

[[nodiscard]] std::string bashCompletion();
[[nodiscard]] std::string zshCompletion();
[[nodiscard]] std::string fishCompletion();

}  // namespace tavrin::cli
