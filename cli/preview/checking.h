// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/preview/drawing.h"

namespace tavrin::cli {

/// What is wrong or doubtful in a drawing's texts and its size, as `toJSON` writes diagnostics.
[[nodiscard]] std::string checked(const Drawing& drawing);

}  // namespace tavrin::cli
