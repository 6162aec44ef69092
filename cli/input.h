// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/budget/render_budget.h"

namespace tavrin::cli {

/// A text that was read, and what messages call it.
struct Source {
    std::string name;
    std::string text = {};
    /// The line of the input that the text begins in, where it is a part.
    std::size_t firstLine = 1;
};

/// What messages call an input: its path, "<stdin>" for "-".
[[nodiscard]] std::string displayName(const std::string& path);

/// All bytes of a file that was named, which may be a pipe, or of standard input for "-". Throws `IOError` for what
/// cannot be read, for a folder and for more than 256 MiB, and `TavrinError` of kind "Budget" for more bytes than a
/// budget has.
[[nodiscard]] std::string readInput(const std::string& path, const RenderBudget& budget);

/// The same for a file that was found in a folder: it must be a regular one, and nothing else is waited for.
[[nodiscard]] std::string readFound(const std::string& path);

}  // namespace tavrin::cli
