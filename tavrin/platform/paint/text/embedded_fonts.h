// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <cairo.h>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/visual_line.h"

namespace tavrin::paint {

/// Cairo's view of the fonts of one engine, for documents that embed them (SVG, PDF).
class EmbeddedFonts {
public:
    explicit EmbeddedFonts(text::FontFaces& faces) : faces_(faces) {}

    /// Shows glyphs with the current source, the first pen at `pen`. Keeps the text selectable where Cairo can.
    void show(cairo_t* cairo, double size, const text::Piece& piece, Point pen);

private:
    cairo_font_face_t* fontOf(text::FontId font);

    text::FontFaces& faces_;
    std::vector<Handle<cairo_font_face_t, cairo_font_face_destroy>> fonts_;
};

}  // namespace tavrin::paint
