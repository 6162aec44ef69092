// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tavrin::text {

/// Whether a grapheme asks to be drawn as a colour picture (its font must have the picture as well): emoji by default,
/// the emoji selector, skin tones, joined sequences, flags and keycaps; the text selector forbids it.
[[nodiscard]] bool wantsEmoji(std::u32string_view grapheme);

/// Whether a character is drawn as a picture unless U+FE0E follows: Unicode's Emoji_Presentation.
[[nodiscard]] bool isEmojiByDefault(char32_t character);

}  // namespace tavrin::text
