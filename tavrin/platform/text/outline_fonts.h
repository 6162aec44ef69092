// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <cairo.h>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/visual_line.h"

namespace tavrin::text {

/// Cairo's view of the fonts of one engine, for documents with embedded fonts (SVG, PDF).
class OutlineFonts {
public:
    explicit OutlineFonts(FontFaces& faces) : faces_(faces) {}

    /// Shows glyphs with the current source, the first pen at `pen`. Keeps the text selectable where Cairo can.
    void show(cairo_t* cairo, double size, const Piece& piece, Point pen);

private:
    cairo_font_face_t* fontOf(FontId font);

    FontFaces& faces_;
    std::vector<Handle<cairo_font_face_t, cairo_font_face_destroy>> fonts_;
};

/// Adds a glyph's outline in points to the current path, its pen at `pen`.
void addOutline(cairo_t* cairo, FontFace& face, std::uint32_t glyph, double size, Point pen);

}  // namespace tavrin::text
