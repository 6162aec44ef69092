// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <cairo.h>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/pixels/rgba.h"
#include "tavrin/platform/text/emoji_pictures.h"
#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/glyph_masks.h"
#include "tavrin/platform/text/line_raster.h"
#include "tavrin/platform/text/outline_fonts.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/text/visual_line.h"

namespace tavrin::text {

/// Draws broken texts on Cairo: on pictures from its own glyph masks, which stand on quarters of pixels; turned,
/// stretched and very large texts as outlines; in documents as glyphs of embedded fonts.
class TextPainter {
public:
    explicit TextPainter(FontFaces& faces)
        : faces_(faces), masks_(faces), raster_(masks_), outlineFonts_(faces), pictures_(faces) {}

    void draw(cairo_t* cairo, const ShapedText& text, const BrokenText& broken, Point origin, double width, RGBA color);

private:
    enum class Method : unsigned char { masks, outlines, fonts };
    struct Target;

    static Target targetOf(cairo_t* cairo, double size);
    void drawLine(const Target& target, const ShapedText& text, Point pen);
    void drawPiece(const Target& target, double size, const Piece& piece, Point pen);
    void drawPictures(const Target& target, double size, const Piece& piece, Point pen);
    void drawPicture(const Target& target, double size, FontId font, std::uint32_t glyph, Point pen);
    void fillOutlines(const Target& target, double size, const Piece& piece, Point pen);

    FontFaces& faces_;
    GlyphMasks masks_;
    LineRaster raster_;
    OutlineFonts outlineFonts_;
    EmojiPictures pictures_;
    std::vector<Piece> pieces_;
};

}  // namespace tavrin::text
