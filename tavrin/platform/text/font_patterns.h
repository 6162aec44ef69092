// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "tavrin/platform/foundation/memory/handles.h"

namespace tavrin::text {

/// What a pattern of FontConfig says of one face, in plain types.
struct FontPattern {
    std::vector<std::string> families;
    std::string style;
    std::string path;
    unsigned faceIndex = 0;
    int weight = FC_WEIGHT_REGULAR;
    const FcCharSet* charset = nullptr;

    [[nodiscard]] bool isOfFamily(std::string_view name) const;
};

/// A configuration that knows the directories packages install fonts in and nothing else, or only a folder where one is
/// named; null where that is none, or holds something but files.
Handle<FcConfig, FcConfigDestroy> makePrivateFontConfig(const std::string& folder);

/// All faces of the configuration, of one family or (empty) of any. Upright, of normal width, scalable or in colour;
/// the named instances of variable fonts are left out. `set` keeps the charsets alive. In no particular order.
std::vector<FontPattern> listFonts(FcConfig* config, const std::string& family, bool withCharsets,
                                   Handle<FcFontSet, FcFontSetDestroy>& set);

/// The same of one font file; empty when it cannot be read as a font.
std::vector<FontPattern> readFontFile(const std::string& path, Handle<FcFontSet, FcFontSetDestroy>& set);

/// The pattern nearest to a weight; the same whatever the order of `patterns`. Null when there is none.
const FontPattern* nearestWeight(const std::vector<const FontPattern*>& patterns, int weight);

}  // namespace tavrin::text
