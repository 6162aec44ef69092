// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <cairo.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/text/font_faces.h"

namespace tavrin::paint {

/// The outlines of one font's glyphs.
class FontOutlines {
public:
    FontOutlines(const text::FontFace& face, FT_Library freeType);

    [[nodiscard]] double unitsPerEm() const { return unitsPerEm_; }
    /// A glyph's outline in font units, valid until the next call; null when it has none.
    [[nodiscard]] FT_Outline* outline(std::uint32_t glyph);

private:
    double unitsPerEm_;
    Handle<FT_FaceRec_, FT_Done_Face> face_;
};

/// The outlines of one engine's fonts, each opened when something of it is drawn.
class GlyphOutlines {
public:
    explicit GlyphOutlines(text::FontFaces& faces);

    [[nodiscard]] FT_Library freeType() const { return freeType_.get(); }
    [[nodiscard]] FontOutlines& ofFont(text::FontId font);

private:
    text::FontFaces& faces_;
    Handle<FT_LibraryRec_, FT_Done_FreeType> freeType_;
    std::vector<std::unique_ptr<FontOutlines>> fonts_;
};

/// Adds a glyph's outline in points to the current path, its pen at `pen`.
void addOutline(cairo_t* cairo, FontOutlines& font, std::uint32_t glyph, double size, Point pen);

}  // namespace tavrin::paint
