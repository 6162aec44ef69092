// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// One step through a text that ought to be UTF-8.
struct Utf8Step {
    std::optional<char32_t> codePoint;  ///< none where the bytes are no UTF-8
    std::size_t length = 0;             ///< bytes taken: 1…4; of a broken sequence what is right of it, at least 1
};

/// Decodes the code point at `offset`, which must lie inside `text`. Overlong forms, surrogates and numbers above
/// U+10FFFF are errors.
[[nodiscard]] Utf8Step decodeUtf8(std::string_view text, std::size_t offset);

/// Whether all of `text` is UTF-8.
[[nodiscard]] bool isValidUtf8(std::string_view text);

/// The number of code points; each broken sequence counts as one.
[[nodiscard]] std::size_t countCodePoints(std::string_view text);

/// The offset of what stands so many code points behind another offset, at most the end.
[[nodiscard]] std::size_t skipCodePoints(std::string_view text, std::size_t offset, std::size_t count);

/// `text` with each broken sequence replaced by U+FFFD.
[[nodiscard]] std::string sanitizedUtf8(std::string_view text);

/// Appends the UTF-8 form of a code point, which must not be a surrogate or above U+10FFFF.
void appendUtf8(std::string& out, char32_t codePoint);

}  // namespace tavrin
