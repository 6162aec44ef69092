// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <unordered_map>

#include <hb.h>

#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/ui/font.h"

namespace tavrin::text {

/// Whether a character is one that draws nothing by itself, such as a joiner or a direction mark.
[[nodiscard]] bool isIgnorable(char32_t character);

/// Which shapes ideographs take, by the writing of the paragraph they stand in.
enum class HanFace : unsigned char { chinese, japanese, korean, traditional };

/// The shapes for the ideographs of a paragraph: Japanese beside kana, Korean beside hangul, traditional beside
/// bopomofo, else simplified.
[[nodiscard]] HanFace hanFaceOf(std::u32string_view paragraph);

/// What a grapheme is looked up with.
struct FontContext {
    Font::Weight weight = Font::Weight::regular;
    hb_script_t script = HB_SCRIPT_COMMON;
    HanFace han = HanFace::chinese;
    /// The font of what stands before; characters that belong to no script stay in it.
    std::optional<FontId> previous = std::nullopt;
};

/// Finds the font of each grapheme: the system font, the host's own, then the installed fallbacks in a fixed order.
class FontChooser {
public:
    explicit FontChooser(FontFaces& faces) : faces_(faces) {}

    FontId choose(std::u32string_view grapheme, const FontContext& context);
    /// The colour font, if it has a picture for the character.
    std::optional<FontId> emojiFont(char32_t character);
    [[nodiscard]] bool isEmoji(FontId font) const { return faces_.catalog().isEmoji(font); }

private:
    std::optional<FontId> fallback(std::u32string_view grapheme, const FontContext& context);
    std::optional<FontId> search(std::u32string_view grapheme, const FontContext& context);
    const std::array<const FallbackFamily*, 3>& familiesOf(hb_script_t script, HanFace han);

    FontFaces& faces_;
    std::unordered_map<std::uint64_t, std::optional<FontId>> known_;
    std::unordered_map<std::uint64_t, std::array<const FallbackFamily*, 3>> scriptFamilies_;
};

}  // namespace tavrin::text
