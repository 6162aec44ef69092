// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/paragraph_shaper.h"

#include <algorithm>
#include <iterator>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/text/font_metrics.h"

namespace tavrin::text {
namespace {

constexpr float spacesOfTab = 4;

/// Scripts whose letters touch, so that no gap may be set between them.
bool joinsLetters(hb_script_t script) {
    constexpr hb_script_t scripts[] = {
        HB_SCRIPT_ARABIC,          HB_SCRIPT_SYRIAC,          HB_SCRIPT_MONGOLIAN, HB_SCRIPT_NKO,     HB_SCRIPT_MANDAIC,
        HB_SCRIPT_MANICHAEAN,      HB_SCRIPT_PSALTER_PAHLAVI, HB_SCRIPT_PHAGS_PA,  HB_SCRIPT_ADLAM,   HB_SCRIPT_SOGDIAN,
        HB_SCRIPT_HANIFI_ROHINGYA, HB_SCRIPT_DEVANAGARI,      HB_SCRIPT_BENGALI,   HB_SCRIPT_GURMUKHI};
    return std::find(std::begin(scripts), std::end(scripts), script) != std::end(scripts);
}

/// Space that hangs at a line's end; not the non-breaking spaces.
bool isWhite(char32_t c) {
    return c == ' ' || c == 0x1680 || (c >= 0x2000 && c <= 0x200B && c != 0x2007) || c == 0x205F || c == 0x3000;
}

/// The blank between words, also where it keeps them together.
bool isWordBlank(char32_t c) { return c == ' ' || c == 0xA0; }

std::uint32_t utf8Length(char32_t c) { return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4; }

}  // namespace

void ParagraphShaper::add(const Paragraph& paragraph, const ItemizedParagraph& itemized) {
    itemized_ = &itemized;
    characters_ = paragraph.characters;
    isTab_.assign(characters_.size(), false);
    for (std::size_t i = 0; i < characters_.size(); ++i) {
        if (characters_[i] != '\t') continue;
        characters_[i] = ' ';
        isTab_[i] = true;
    }
    character_ = 0;
    byte_ = static_cast<std::uint32_t>(shaped_.utf8.size());
    shaped_.utf8 += paragraph.utf8;
    for (const auto& item : itemized.items) {
        shapeItem(item);
        checkBudget();
    }
    shaped_.paragraphs.push_back({itemized.baseLevel, static_cast<std::uint32_t>(shaped_.units.size()),
                                  static_cast<std::uint32_t>(shaped_.runs.size())});
}

void ParagraphShaper::shapeItem(const Item& item) {
    static const hb_language_t language = hb_language_from_string("und", -1);
    constexpr hb_feature_t tabularDigits{HB_TAG('t', 'n', 'u', 'm'), 1, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END};

    const FontFace& face = faces_.face(item.font);
    hb_buffer_clear_contents(buffer_);
    hb_buffer_set_direction(buffer_, item.level % 2 != 0 ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer_, item.script);
    hb_buffer_set_language(buffer_, language);
    hb_buffer_add_utf32(buffer_, reinterpret_cast<const std::uint32_t*>(characters_.data()),
                        static_cast<int>(characters_.size()), item.begin, static_cast<int>(item.end - item.begin));
    const bool isTabular = font_.family == Font::Family::monospacedDigitSystem;
    hb_shape(face.shaper(), buffer_, &tabularDigits, isTabular ? 1 : 0);

    const std::size_t firstUnit = shaped_.units.size();
    addUnits(item, addGlyphs(shaped_.size / face.unitsPerEm()));
    measureUnits(item, firstUnit);
    if (shaped_.units.size() > firstUnit)
        shaped_.runs.push_back({item.font, item.level, item.emoji, static_cast<std::uint32_t>(firstUnit),
                                static_cast<std::uint32_t>(shaped_.units.size())});
}

/// Copies the shaped glyphs; answers where they begin.
std::uint32_t ParagraphShaper::addGlyphs(double pointsPerUnit) {
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer_, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer_, nullptr);
    const auto points = [pointsPerUnit](hb_position_t units) { return static_cast<float>(units * pointsPerUnit); };
    const auto first = static_cast<std::uint32_t>(shaped_.glyphs.size());
    for (unsigned i = 0; i < count; ++i)
        shaped_.glyphs.push_back({infos[i].codepoint, points(positions[i].x_advance), points(positions[i].x_offset),
                                  -points(positions[i].y_offset)});
    return first;
}

/// Groups the item's glyphs into units, in logical order.
void ParagraphShaper::addUnits(const Item& item, std::uint32_t firstGlyph) {
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer_, &count);
    const bool isBackward = item.level % 2 != 0;
    unitCharacters_.clear();
    std::uint32_t lastCluster = item.begin;
    for (unsigned n = 0; n < count; ++n) {
        const unsigned i = isBackward ? count - 1 - n : n;
        const std::uint32_t cluster = infos[i].cluster;
        if (n == 0)
            beginUnit(item.begin, firstGlyph + i);
        else if (cluster != lastCluster && itemized_->beginsGrapheme(cluster))
            beginUnit(cluster, firstGlyph + i);
        lastCluster = cluster;
        Unit& unit = shaped_.units.back();
        if (isBackward) unit.glyph = firstGlyph + i;
        ++unit.glyphCount;
    }
}

void ParagraphShaper::beginUnit(std::uint32_t character, std::uint32_t glyph) {
    for (; character_ < character; ++character_) byte_ += utf8Length(characters_[character_]);
    Unit unit;
    unit.byte = byte_;
    unit.glyph = glyph;
    unit.breakBefore = itemized_->mayBreakBefore(character);
    shaped_.units.push_back(unit);
    unitCharacters_.push_back(character);
}

/// Sets the units' widths, with the spacing after them, and whether they are white.
void ParagraphShaper::measureUnits(const Item& item, std::size_t firstUnit) {
    const bool isSpaced = !item.emoji && !joinsLetters(item.script);
    const bool isTabular = font_.family == Font::Family::monospacedDigitSystem;
    const double spacing = letterSpacing(shaped_.size, font_.weight);
    const auto narrowedBy = [&](double length) { return isSpaced ? static_cast<float>(spacing - length) : 0; };
    const float afterLetter = narrowedBy(0);
    const float afterBlank = narrowedBy(blankNarrowing(shaped_.size, font_.weight));
    const float afterDigit = narrowedBy(isTabular ? tabularDigitNarrowing(shaped_.size) : 0);
    for (std::size_t n = 0; n < unitCharacters_.size(); ++n) {
        Unit& unit = shaped_.units[firstUnit + n];
        const std::uint32_t begin = unitCharacters_[n];
        const std::uint32_t end = n + 1 < unitCharacters_.size() ? unitCharacters_[n + 1] : item.end;
        Glyph* glyphs = shaped_.glyphs.data() + unit.glyph;
        if (isTab_[begin]) glyphs[0].advance *= spacesOfTab;
        float advance = 0;
        for (std::uint32_t i = 0; i < unit.glyphCount; ++i) advance += glyphs[i].advance;
        if (advance > 0) {
            const char32_t character = characters_[begin];
            const float after = isWordBlank(character) ? afterBlank : isDigit(character) ? afterDigit : afterLetter;
            glyphs[unit.glyphCount - 1].advance += after;
            advance += after;
        }
        unit.advance = advance;
        unit.white = end - begin == 1 && isWhite(characters_[begin]);
    }
}

}  // namespace tavrin::text
