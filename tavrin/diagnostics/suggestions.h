// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tavrin/schema/language.h"

// What was probably meant instead of what is written. Hints follow a message; they are empty where nothing is known.

namespace tavrin {

/// The one of `words` that `word` is meant to be; none where there is a second one as close to it, or none at all.
[[nodiscard]] std::optional<std::string_view> onlyCloseMatch(std::string_view word,
                                                             std::span<const std::string_view> words);

/// The keyword that `word` is meant to be: as above, and "left" and "right" where the language says "leading" and
/// "trailing".
[[nodiscard]] std::optional<std::string_view> meantKeyword(std::string_view word,
                                                           std::span<const std::string_view> words);
/// `; did you mean "leading"?` where a word is meant to be one of `words` or at least close to one, else nothing.
[[nodiscard]] std::string keywordSuggestion(std::string_view word, std::span<const std::string_view> words);

/// `; did you mean 0.75?` for "75%" where a share stands, and for what else is a number with a unit; the seconds since
/// 1970 for a date where seconds are meant; else nothing.
[[nodiscard]] std::string numberSuggestion(std::string_view text, const LanguageField& field);

/// `#F00` with all its digits: `#FF0000`; empty for what is no such colour.
[[nodiscard]] std::string longColor(std::string_view color);

/// `; did you mean "vstack"?` where a word is close to one of `words`, else nothing.
[[nodiscard]] std::string suggestionFor(std::string_view word, std::span<const std::string_view> words);

}  // namespace tavrin
