// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Steps through a text that is known to be JSON; in any other text they go on somewhere behind, never past the end.

namespace tavrin {

/// Where the text goes on behind blanks.
[[nodiscard]] std::size_t skipBlanks(std::string_view text, std::size_t at);

/// Where the text goes on behind the string that starts there.
[[nodiscard]] std::size_t skipString(std::string_view text, std::size_t at);

/// Where the text goes on behind the number or word that starts there.
[[nodiscard]] std::size_t skipScalar(std::string_view text, std::size_t at);

/// The string that stands between two quotes.
[[nodiscard]] std::string unescaped(std::string_view raw);

}  // namespace tavrin
