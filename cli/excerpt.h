// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrin::cli {

/// A line of a text with a mark under one place.
struct Excerpt {
    std::string line;
    /// Blanks, and tabs where the line has tabs, up to "^".
    std::string mark;
};

/// The line around the byte at `offset`; of a long line about 100 columns around it, "…" where it is cut.
[[nodiscard]] Excerpt excerptAt(std::string_view text, std::size_t offset);

/// `text` as it may be shown on a terminal: control characters but tabs, and what is not UTF-8, become U+FFFD.
[[nodiscard]] std::string printable(std::string_view text);

}  // namespace tavrin::cli
