// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/font_chooser.h"

#include <algorithm>
#include <string>

#include <pango/pango.h>

namespace tavrin::text {
namespace {

constexpr std::size_t rememberedCharacters = 8192;
/// More characters than this of one grapheme do not sway the choice.
constexpr std::size_t judgedCharacters = 16;

bool isSpace(char32_t c) {
    return c == ' ' || c == '\t' || c == 0xA0 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F || c == 0x205F;
}

bool isEastAsian(hb_script_t script) {
    return script == HB_SCRIPT_HAN || script == HB_SCRIPT_HIRAGANA || script == HB_SCRIPT_KATAKANA ||
           script == HB_SCRIPT_HANGUL || script == HB_SCRIPT_BOPOMOFO;
}

std::string_view cjkFamily(hb_script_t script, HanFace han) {
    if (script == HB_SCRIPT_HANGUL) return "Noto Sans CJK KR";
    if (script == HB_SCRIPT_HIRAGANA || script == HB_SCRIPT_KATAKANA) return "Noto Sans CJK JP";
    if (script == HB_SCRIPT_BOPOMOFO) return "Noto Sans CJK TC";
    constexpr std::string_view families[] = {"Noto Sans CJK SC", "Noto Sans CJK JP", "Noto Sans CJK KR",
                                             "Noto Sans CJK TC"};
    return families[static_cast<unsigned>(han)];
}

std::string lettersOf(std::string_view text) {
    std::string letters;
    for (const char c : text)
        if (g_ascii_isalpha(c)) letters.push_back(g_ascii_tolower(c));
    return letters;
}

/// A script's name in lower-case letters, as in a Noto family's name; empty for unknown scripts.
std::string nameOf(hb_script_t script) {
    auto* scripts = static_cast<GEnumClass*>(g_type_class_ref(PANGO_TYPE_SCRIPT));
    const GUnicodeScript value = g_unicode_script_from_iso15924(hb_script_to_iso15924_tag(script));
    const GEnumValue* named = g_enum_get_value(scripts, static_cast<int>(value));
    std::string name = named == nullptr ? std::string() : lettersOf(named->value_nick);
    g_type_class_unref(scripts);
    return name;
}

const FallbackFamily* familyOf(const Fallbacks& fallbacks, std::string_view start, const std::string& script) {
    for (const auto& family : fallbacks.families)
        if (family.name.starts_with(start) && lettersOf(std::string_view(family.name).substr(start.size())) == script)
            return &family;
    return nullptr;
}

bool coversAll(const FontSource& font, std::u32string_view grapheme) {
    return std::all_of(grapheme.begin(), grapheme.end(), [&](char32_t c) { return isIgnorable(c) || font.covers(c); });
}

bool coversAll(const FontFace& font, std::u32string_view grapheme) {
    return std::all_of(grapheme.begin(), grapheme.end(),
                       [&](char32_t c) { return isIgnorable(c) || font.covers(c == '\t' ? U' ' : c); });
}

}  // namespace

bool isIgnorable(char32_t c) {
    return c == 0xAD || c == 0x034F || c == 0x061C || c == 0x180E || c == 0xFEFF || (c >= 0x180B && c <= 0x180F) ||
           (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) ||
           (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xE0000 && c <= 0xE0FFF);
}

HanFace hanFaceOf(std::u32string_view paragraph) {
    HanFace found = HanFace::chinese;
    for (const char32_t c : paragraph) {
        if (c < 0x1100) continue;
        if ((c >= 0x3041 && c <= 0x30FF) || (c >= 0x31F0 && c <= 0x31FF)) return HanFace::japanese;
        if ((c >= 0xAC00 && c <= 0xD7A3) || (c >= 0x1100 && c <= 0x11FF)) found = HanFace::korean;
        if (c >= 0x3105 && c <= 0x312F && found == HanFace::chinese) found = HanFace::traditional;
    }
    return found;
}

/// 1. A blank stays in the font before it, if that has it; so does what draws nothing.
/// 2. The system font, if it has all of the grapheme; else, for what belongs to no script, the font before it.
/// 3. Else the first that has all of it among the host's own fonts, the families of its script, all fallbacks in their
///    order and the colour font.
/// 4. Else the same for the grapheme's first character alone.
/// 5. Else the system font, which has an empty box for it.
FontId FontChooser::choose(std::u32string_view grapheme, const FontContext& context) {
    const FontId system = faces_.catalog().systemFont(context.weight);
    grapheme = grapheme.substr(0, judgedCharacters);
    if (context.previous && isSpace(grapheme[0]) && coversAll(faces_.face(*context.previous), grapheme))
        return *context.previous;
    if (isIgnorable(grapheme[0]) && grapheme.size() == 1) return context.previous.value_or(system);
    if (coversAll(faces_.face(system), grapheme)) return system;
    if (context.previous && *context.previous != system) {
        const hb_script_t script = hb_unicode_script(hb_unicode_funcs_get_default(), grapheme[0]);
        const bool hasNoScript = script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED;
        if (hasNoScript && coversAll(faces_.face(*context.previous), grapheme)) return *context.previous;
    }
    if (const auto font = fallback(grapheme, context)) return *font;
    if (grapheme.size() == 1 || faces_.face(system).covers(grapheme[0])) return system;
    return fallback(grapheme.substr(0, 1), context).value_or(system);
}

std::optional<FontId> FontChooser::emojiFont(char32_t character) {
    const auto& catalog = faces_.catalog();
    const auto& emoji = catalog.fallbacks().emoji;
    return emoji && catalog.source(*emoji).covers(character) ? emoji : std::nullopt;
}

std::optional<FontId> FontChooser::fallback(std::u32string_view grapheme, const FontContext& context) {
    if (grapheme.size() > 1) return search(grapheme, context);
    const bool bold = context.weight != Font::Weight::regular;
    const std::uint64_t key = (std::uint64_t{context.script} << 32) | (std::uint64_t{grapheme[0]} << 3) |
                              (static_cast<std::uint64_t>(context.han) << 1) | (bold ? 1 : 0);
    if (const auto found = known_.find(key); found != known_.end()) return found->second;
    if (known_.size() >= rememberedCharacters) known_.clear();
    return known_[key] = search(grapheme, context);
}

std::optional<FontId> FontChooser::search(std::u32string_view grapheme, const FontContext& context) {
    const FontCatalog& catalog = faces_.catalog();
    const auto fontOf = [&](const FallbackFamily& family) -> std::optional<FontId> {
        if (context.weight != Font::Weight::regular && family.bold && coversAll(catalog.source(*family.bold), grapheme))
            return family.bold;
        if (coversAll(catalog.source(family.regular), grapheme)) return family.regular;
        return std::nullopt;
    };
    for (const auto& family : catalog.hostFamilies())
        if (const auto font = fontOf(family)) return font;
    for (const auto* family : familiesOf(context.script, context.han))
        if (family != nullptr)
            if (const auto font = fontOf(*family)) return font;
    for (const auto& family : catalog.fallbacks().families)
        if (const auto font = fontOf(family)) return font;
    const auto& emoji = catalog.fallbacks().emoji;
    return emoji && coversAll(catalog.source(*emoji), grapheme) ? emoji : std::nullopt;
}

/// The families that are tried first for a script.
const std::array<const FallbackFamily*, 3>& FontChooser::familiesOf(hb_script_t script, HanFace han) {
    const std::uint64_t key = (std::uint64_t{script} << 2) | static_cast<std::uint64_t>(han);
    const auto [found, isNew] = scriptFamilies_.try_emplace(key);
    if (!isNew) return found->second;
    auto& families = found->second;
    const Fallbacks& fallbacks = faces_.catalog().fallbacks();
    if (isEastAsian(script)) {
        families[0] = fallbacks.find(cjkFamily(script, han));
    } else if (const std::string name = nameOf(script); !name.empty() && script != HB_SCRIPT_COMMON) {
        families = {fallbacks.find("Noto Sans"), familyOf(fallbacks, "Noto Sans ", name),
                    familyOf(fallbacks, "Noto Serif ", name)};
    }
    return families;
}

}  // namespace tavrin::text
