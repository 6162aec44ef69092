// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fontconfig/fontconfig.h>
#include <hb.h>

#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::text {

struct FontPattern;

/// Names a font within one catalog; the same in every thread.
using FontId = std::uint32_t;

/// One face of a font file. The file is mapped into memory when it is first needed.
class FontSource {
public:
    FontSource(std::string path, unsigned faceIndex, const FcCharSet* charset)
        : path_(std::move(path)), faceIndex_(faceIndex), charset_(charset) {}

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] unsigned faceIndex() const { return faceIndex_; }
    /// Whether the font has a glyph for the character, without opening the file.
    [[nodiscard]] bool covers(char32_t character) const {
        return charset_ != nullptr && FcCharSetHasChar(charset_, character) == FcTrue;
    }
    /// The file's bytes; empty when it cannot be read. Thread-safe.
    [[nodiscard]] hb_blob_t* bytes() const;

private:
    std::string path_;
    unsigned faceIndex_;
    const FcCharSet* charset_;
    mutable std::once_flag mapped_;
    mutable Handle<hb_blob_t, hb_blob_destroy> bytes_;
};

/// A family among the fallbacks, in the two weights that fallbacks are drawn in.
struct FallbackFamily {
    std::string name;
    FontId regular = 0;
    std::optional<FontId> bold = std::nullopt;
};

/// The installed fonts that stand in for characters the system font lacks.
struct Fallbacks {
    /// In the order they are tried when nothing is known of the script.
    std::vector<FallbackFamily> families;
    std::optional<FontId> emoji;

    [[nodiscard]] const FallbackFamily* find(std::string_view name) const;
};

/// Which font files there are: the system font in three weights, the host's own, and the fallbacks. It knows only
/// installed packages and the host's files, never a user's configuration, so that a text looks the same everywhere.
class FontCatalog {
public:
    explicit FontCatalog(const FontLibrary::Options& options);

    [[nodiscard]] FontId systemFont(Font::Weight weight) const { return system_[static_cast<unsigned>(weight)]; }
    [[nodiscard]] const std::vector<FallbackFamily>& hostFamilies() const { return hostFamilies_; }
    /// Listed when first asked for. Thread-safe.
    [[nodiscard]] const Fallbacks& fallbacks() const;
    /// Whether a font is the colour font of the fallbacks; does not list them.
    [[nodiscard]] bool isEmoji(FontId font) const { return font >= sources_.size() && fallbacks_.emoji == font; }
    [[nodiscard]] const FontSource& source(FontId font) const;

private:
    void addHostFamilies(const std::vector<FontPattern>& fonts);
    void findSystemFont(const FontLibrary::Options& options, const std::vector<FontPattern>& hostFonts);
    FontId add(const FontPattern& font);
    void listFallbacks() const;

    Handle<FcConfig, FcConfigDestroy> config_;
    std::vector<Handle<FcFontSet, FcFontSetDestroy>> hostPatterns_;
    std::deque<FontSource> sources_;
    FontId system_[3] = {};
    std::vector<FallbackFamily> hostFamilies_;

    mutable std::once_flag listed_;
    mutable Handle<FcFontSet, FcFontSetDestroy> fallbackPatterns_;
    mutable std::deque<FontSource> fallbackSources_;
    mutable Fallbacks fallbacks_;
};

}  // namespace tavrin::text
