// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/font_catalog.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/text/font_patterns.h"

namespace tavrin::text {
namespace {

using Patterns = std::vector<const FontPattern*>;

/// FontConfig's names of the three weights that texts ask for.
constexpr int weights[] = {FC_WEIGHT_REGULAR, FC_WEIGHT_DEMIBOLD, FC_WEIGHT_BOLD};

constexpr std::string_view emojiFamily = "Noto Color Emoji";

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

/// Where a family stands among the fallbacks: general families, symbols, ideographs, then each script's own, and last
/// the designs for other purposes.
int rankOf(std::string_view family) {
    constexpr std::string_view first[] = {"Noto Sans",           "Noto Sans Symbols", "Noto Sans Symbols2",
                                          "Noto Sans Symbols 2", "Noto Sans Math",    "Noto Sans CJK SC",
                                          "Noto Sans CJK JP",    "Noto Sans CJK KR",  "Noto Sans CJK TC"};
    const auto* found = std::find(std::begin(first), std::end(first), family);
    if (found != std::end(first)) return static_cast<int>(found - first);
    for (const auto* special : {" Mono", " Display", " UI", "Condensed", " Slanted", "Noto Rashi"})
        if (contains(family, special)) return 103;
    if (family.starts_with("Noto Sans ")) return 100;
    return family.starts_with("Noto Serif ") ? 101 : 102;
}

bool isTriedBefore(const std::string& a, const std::string& b) {
    return std::tuple(rankOf(a), a.size(), std::string_view(a)) < std::tuple(rankOf(b), b.size(), std::string_view(b));
}

/// The English name of a Noto family; empty for other families.
std::string notoFamily(const FontPattern& font) {
    for (const auto& name : font.families)
        if (name.starts_with("Noto ")) return name;
    return {};
}

std::map<std::string, Patterns> groupedByFamily(const std::vector<FontPattern>& fonts) {
    std::map<std::string, Patterns> families;
    for (const auto& font : fonts)
        if (auto name = notoFamily(font); !name.empty()) families[std::move(name)].push_back(&font);
    return families;
}

/// Adds the faces of one family that fallbacks are drawn with to `sources`; the first of them gets the number `next`.
FallbackFamily addFamily(std::string name, const Patterns& patterns, std::deque<FontSource>& sources,
                         std::size_t next) {
    const auto add = [&](const FontPattern& font) {
        sources.emplace_back(font.path, font.faceIndex, font.charset);
        return static_cast<FontId>(next++);
    };
    const FontPattern* regular = nearestWeight(patterns, FC_WEIGHT_REGULAR);
    const FontPattern* bold = nearestWeight(patterns, FC_WEIGHT_BOLD);
    FallbackFamily family{std::move(name), add(*regular)};
    if (bold != regular) family.bold = add(*bold);
    return family;
}

/// What to tell where the system font is not found.
std::string missing(const FontLibrary::Options& options) {
    const std::string family = "the font family \"" + options.systemFamily + "\" is not ";
    if (!options.folder.empty()) return family + "in the folder \"" + options.folder + "\"";
    if (options.systemFamily != FontLibrary::Options().systemFamily) return family + "installed";
    return family +
           "installed; Debian has it in fonts-inter, and emoji in fonts-noto-color-emoji, or a folder of fonts can be "
           "named";
}

}  // namespace

hb_blob_t* FontSource::bytes() const {
    std::call_once(mapped_, [this] { bytes_.reset(hb_blob_create_from_file(path_.c_str())); });
    return bytes_.get();
}

const FallbackFamily* Fallbacks::find(std::string_view name) const {
    const auto found = std::find_if(families.begin(), families.end(), [&](const auto& f) { return f.name == name; });
    return found == families.end() ? nullptr : &*found;
}

FontCatalog::FontCatalog(const FontLibrary::Options& options) : config_(makePrivateFontConfig(options.folder)) {
    if (!config_ && !options.folder.empty())
        throw TavrinError("Font", "the folder of fonts \"" + options.folder + "\" cannot be read");
    if (!config_) throw TavrinError("Font", "the list of installed fonts cannot be read");
    std::vector<FontPattern> hostFonts;
    for (const auto& file : options.fontFiles) {
        const std::vector<FontPattern> fonts = readFontFile(file, hostPatterns_.emplace_back());
        if (fonts.empty()) throw TavrinError("Font", "\"" + file + "\" cannot be read as a font");
        hostFonts.insert(hostFonts.end(), fonts.begin(), fonts.end());
    }
    addHostFamilies(hostFonts);
    findSystemFont(options, hostFonts);
}

void FontCatalog::addHostFamilies(const std::vector<FontPattern>& fonts) {
    for (const auto& font : fonts) {
        const FontId id = add(font);
        const std::string name = font.families.empty() ? font.path : font.families.front();
        const auto known = std::find_if(hostFamilies_.begin(), hostFamilies_.end(),
                                        [&](const auto& family) { return family.name == name; });
        if (known == hostFamilies_.end())
            hostFamilies_.push_back({name, id});
        else if (font.weight >= FC_WEIGHT_DEMIBOLD)
            known->bold = id;
    }
}

void FontCatalog::findSystemFont(const FontLibrary::Options& options, const std::vector<FontPattern>& hostFonts) {
    const std::string& family = options.systemFamily;
    Handle<FcFontSet, FcFontSetDestroy> set;
    const std::vector<FontPattern> installed = listFonts(config_.get(), family, false, set);
    Patterns candidates;
    for (const auto* fonts : {&hostFonts, &installed}) {
        for (const auto& font : *fonts)
            if (font.isOfFamily(family)) candidates.push_back(&font);
        if (!candidates.empty()) break;
    }
    if (candidates.empty()) throw TavrinError("Font", missing(options));
    for (std::size_t i = 0; i < std::size(weights); ++i) system_[i] = add(*nearestWeight(candidates, weights[i]));
}

FontId FontCatalog::add(const FontPattern& font) {
    sources_.emplace_back(font.path, font.faceIndex, font.charset);
    return static_cast<FontId>(sources_.size() - 1);
}

const Fallbacks& FontCatalog::fallbacks() const {
    std::call_once(listed_, [this] { listFallbacks(); });
    return fallbacks_;
}

void FontCatalog::listFallbacks() const {
    const std::vector<FontPattern> fonts = listFonts(config_.get(), "", true, fallbackPatterns_);
    for (const auto& [name, patterns] : groupedByFamily(fonts)) {
        FallbackFamily family = addFamily(name, patterns, fallbackSources_, sources_.size() + fallbackSources_.size());
        if (name == emojiFamily)
            fallbacks_.emoji = family.regular;
        else
            fallbacks_.families.push_back(std::move(family));
    }
    std::sort(fallbacks_.families.begin(), fallbacks_.families.end(),
              [](const auto& a, const auto& b) { return isTriedBefore(a.name, b.name); });
}

const FontSource& FontCatalog::source(FontId font) const {
    return font < sources_.size() ? sources_[font] : fallbackSources_[font - sources_.size()];
}

}  // namespace tavrin::text
