// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tavrin::cli {

/// This project's licence and the notices of all that the program carries in itself.
[[nodiscard]] std::string_view licenses();

}  // namespace tavrin::cli
