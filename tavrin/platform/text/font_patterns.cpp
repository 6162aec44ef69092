// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/font_patterns.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <tuple>

#include <fontconfig/fcfreetype.h>

namespace tavrin::text {
namespace {

constexpr std::string_view configurationBegin = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>)";
constexpr std::string_view installedFonts = R"(
  <dir>/usr/share/fonts</dir>)";
constexpr std::string_view configurationEnd = R"(
  <cachedir>/var/cache/fontconfig</cachedir>
  <cachedir prefix="xdg">fontconfig</cachedir>
</fontconfig>)";

std::string stringOf(FcPattern* pattern, const char* object, int which = 0) {
    FcChar8* value = nullptr;
    if (FcPatternGetString(pattern, object, which, &value) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(value);
}

int integerOf(FcPattern* pattern, const char* object, int absent) {
    int value = 0;
    return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : absent;
}

bool isTrue(FcPattern* pattern, const char* object) {
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch && value == FcTrue;
}

std::optional<FontPattern> usableFont(FcPattern* pattern) {
    const std::string format = stringOf(pattern, FC_FONTFORMAT);
    const int index = integerOf(pattern, FC_INDEX, 0);
    const bool isInstance = (index >> 16) != 0;
    const bool isDrawable = isTrue(pattern, FC_OUTLINE) || isTrue(pattern, FC_COLOR);
    if ((format != "TrueType" && format != "CFF") || isInstance || !isDrawable) return std::nullopt;

    FontPattern font;
    for (int which = 0;; ++which) {
        std::string family = stringOf(pattern, FC_FAMILY, which);
        if (family.empty()) break;
        font.families.push_back(std::move(family));
    }
    font.style = stringOf(pattern, FC_STYLE);
    font.path = stringOf(pattern, FC_FILE);
    font.faceIndex = static_cast<unsigned>(index);
    font.weight = integerOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR);
    FcCharSet* charset = nullptr;
    if (FcPatternGetCharSet(pattern, FC_CHARSET, 0, &charset) == FcResultMatch) font.charset = charset;
    return font;
}

bool isUpright(FcPattern* pattern) {
    return integerOf(pattern, FC_SLANT, FC_SLANT_ROMAN) == FC_SLANT_ROMAN &&
           integerOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL) == FC_WIDTH_NORMAL;
}

}  // namespace

bool FontPattern::isOfFamily(std::string_view name) const {
    return std::find(families.begin(), families.end(), name) != families.end();
}

namespace {

/// Whether a folder holds nothing but files and folders: opening a pipe would wait for its writer.
bool holdsFiles(const std::string& folder) {
    namespace fs = std::filesystem;
    constexpr std::size_t most = 100'000;
    std::error_code error;
    std::size_t count = 0;
    const auto options = fs::directory_options::follow_directory_symlink;
    for (auto entry = fs::recursive_directory_iterator(folder, options, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code unknown;  // a link that leads nowhere
        if (++count > most || entry->is_other(unknown)) return false;
    }
    return !error;
}

}  // namespace

Handle<FcConfig, FcConfigDestroy> makePrivateFontConfig(const std::string& folder) {
    const auto bytes = [](const std::string& text) { return reinterpret_cast<const FcChar8*>(text.c_str()); };
    if (!folder.empty() && !holdsFiles(folder)) return nullptr;
    std::string text(configurationBegin);
    text.append(folder.empty() ? installedFonts : "").append(configurationEnd);
    Handle<FcConfig, FcConfigDestroy> config(FcConfigCreate());
    if (!config || !FcConfigParseAndLoadFromMemory(config.get(), bytes(text), FcTrue)) return nullptr;
    if (!FcConfigBuildFonts(config.get())) return nullptr;
    if (!folder.empty() && !FcConfigAppFontAddDir(config.get(), bytes(folder))) return nullptr;
    return config;
}

std::vector<FontPattern> listFonts(FcConfig* config, const std::string& family, bool withCharsets,
                                   Handle<FcFontSet, FcFontSetDestroy>& set) {
    const Handle<FcPattern, FcPatternDestroy> wanted(FcPatternCreate());
    if (!family.empty()) FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    const Handle<FcObjectSet, FcObjectSetDestroy> objects(
        FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_FILE, FC_INDEX, FC_WEIGHT, FC_SLANT, FC_WIDTH, FC_FONTFORMAT,
                         FC_OUTLINE, FC_COLOR, static_cast<const char*>(nullptr)));
    if (withCharsets) FcObjectSetAdd(objects.get(), FC_CHARSET);
    set.reset(FcFontList(config, wanted.get(), objects.get()));

    std::vector<FontPattern> fonts;
    for (int i = 0; set && i < set->nfont; ++i) {
        if (!isUpright(set->fonts[i])) continue;
        if (auto font = usableFont(set->fonts[i])) fonts.push_back(std::move(*font));
    }
    return fonts;
}

std::vector<FontPattern> readFontFile(const std::string& path, Handle<FcFontSet, FcFontSetDestroy>& set) {
    constexpr unsigned everyFace = ~0U;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return {};  // opening a pipe would wait for its writer
    set.reset(FcFontSetCreate());
    int faceCount = 0;
    FcFreeTypeQueryAll(reinterpret_cast<const FcChar8*>(path.c_str()), everyFace, nullptr, &faceCount, set.get());
    std::vector<FontPattern> fonts;
    for (int i = 0; i < set->nfont; ++i)
        if (auto font = usableFont(set->fonts[i])) fonts.push_back(std::move(*font));
    return fonts;
}

const FontPattern* nearestWeight(const std::vector<const FontPattern*>& patterns, int weight) {
    // Some bold files call themselves regular in weight; their style tells.
    const auto rank = [weight](const FontPattern* font) {
        const bool saysBold = font->style.find("Bold") != std::string::npos;
        return std::tuple(std::abs(font->weight - weight), saysBold == (weight < FC_WEIGHT_DEMIBOLD),
                          std::string_view(font->path), font->faceIndex);
    };
    const auto nearest = std::min_element(patterns.begin(), patterns.end(),
                                          [&](const auto* a, const auto* b) { return rank(a) < rank(b); });
    return nearest == patterns.end() ? nullptr : *nearest;
}

}  // namespace tavrin::text
