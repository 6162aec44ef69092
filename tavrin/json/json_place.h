// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "tavrin/platform/foundation/coding_path.h"

namespace tavrin {

/// A place in a text, as an editor shows it.
struct TextPlace {
    std::size_t offset = 0;  ///< in bytes
    std::size_t line = 1;    ///< from 1
    std::size_t column = 1;  ///< from 1, in code points

    friend bool operator==(const TextPlace&, const TextPlace&) = default;
};

/// The line and column of a byte offset; an offset behind the end counts as the end. Lines end at "\n".
[[nodiscard]] TextPlace placeAt(std::string_view text, std::size_t offset);

/// The line that holds the byte at `offset`, without its end ("\n" or "\r\n").
[[nodiscard]] std::string_view lineAt(std::string_view text, std::size_t offset);

/// The byte offset of the value that `path` leads to in `text`, which must be valid JSON; none when it leads nowhere.
/// The first of duplicate keys wins. Linear in the text.
[[nodiscard]] std::optional<std::size_t> locate(std::string_view text, const CodingPath& path);

}  // namespace tavrin
