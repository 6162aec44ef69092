// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// What standard error is connected to.
namespace tavrin::cli {

[[nodiscard]] bool standardErrorIsTerminal();
/// Whether messages are coloured: on a terminal that can, unless `NO_COLOR` is set.
[[nodiscard]] bool standardErrorHasColor();
/// The terminal's width in columns; 80 where it is not known.
[[nodiscard]] std::size_t standardErrorColumns();

}  // namespace tavrin::cli
