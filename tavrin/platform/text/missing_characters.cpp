// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/missing_characters.h"

#include <algorithm>
#include <set>

#include "tavrin/platform/foundation/strings/utf8.h"
#include "tavrin/platform/text/font_chooser.h"

namespace tavrin::text {
namespace {

constexpr std::uint32_t missingGlyph = 0;  // the glyph that every font has for what it lacks

bool hasBox(const ShapedText& text, const Unit& unit) {
    const auto first = text.glyphs.begin() + unit.glyph;
    return std::any_of(first, first + unit.glyphCount, [](const Glyph& glyph) { return glyph.id == missingGlyph; });
}

}  // namespace

std::vector<char32_t> missingCharacters(const ShapedText& text, FontFaces& faces) {
    std::vector<char32_t> missing;
    std::set<char32_t> known;
    for (const Run& run : text.runs)
        for (std::uint32_t unit = run.unitBegin; unit < run.unitEnd; ++unit) {
            if (!hasBox(text, text.units[unit])) continue;
            // Of several characters that share glyphs only some may be boxes.
            for (std::size_t at = text.units[unit].byte; at < text.endByte(unit);) {
                const auto [character, length] = decodeUtf8(text.utf8, at);
                at += length;
                if (!character || isIgnorable(*character) || faces.face(run.font).covers(*character)) continue;
                if (known.insert(*character).second) missing.push_back(*character);
            }
        }
    return missing;
}

}  // namespace tavrin::text
