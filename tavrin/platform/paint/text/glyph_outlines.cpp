// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/glyph_outlines.h"

#include <new>

#include FT_OUTLINE_H

namespace tavrin::paint {
namespace {

/// Positions in FreeType's outlines to a path of Cairo's.
struct PathSink {
    cairo_t* cairo;
    double scale;
    Point pen;

    [[nodiscard]] Point at(const FT_Vector* v) const {
        return {pen.x + static_cast<double>(v->x) * scale, pen.y - static_cast<double>(v->y) * scale};
    }
    static const PathSink& of(void* self) { return *static_cast<const PathSink*>(self); }

    static int moveTo(const FT_Vector* to, void* self) {
        const Point p = of(self).at(to);
        cairo_close_path(of(self).cairo);
        cairo_move_to(of(self).cairo, p.x, p.y);
        return 0;
    }
    static int lineTo(const FT_Vector* to, void* self) {
        const Point p = of(self).at(to);
        cairo_line_to(of(self).cairo, p.x, p.y);
        return 0;
    }
    static int conicTo(const FT_Vector* control, const FT_Vector* to, void* self) {
        const Point c = of(self).at(control);
        const Point p = of(self).at(to);
        Point from;
        cairo_get_current_point(of(self).cairo, &from.x, &from.y);
        cairo_curve_to(of(self).cairo, from.x + (c.x - from.x) * 2 / 3, from.y + (c.y - from.y) * 2 / 3,
                       p.x + (c.x - p.x) * 2 / 3, p.y + (c.y - p.y) * 2 / 3, p.x, p.y);
        return 0;
    }
    static int cubicTo(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* self) {
        const Point a = of(self).at(first);
        const Point b = of(self).at(second);
        const Point p = of(self).at(to);
        cairo_curve_to(of(self).cairo, a.x, a.y, b.x, b.y, p.x, p.y);
        return 0;
    }
};

}  // namespace

FontOutlines::FontOutlines(const text::FontFace& face, FT_Library freeType) : unitsPerEm_(face.unitsPerEm()) {
    const text::FontSource& source = face.source();
    unsigned length = 0;
    const char* bytes = hb_blob_get_data(source.bytes(), &length);
    FT_Face opened = nullptr;
    if (FT_New_Memory_Face(freeType, reinterpret_cast<const FT_Byte*>(bytes), static_cast<FT_Long>(length),
                           static_cast<FT_Long>(source.faceIndex()), &opened) == 0)
        face_.reset(opened);
}

FT_Outline* FontOutlines::outline(std::uint32_t glyph) {
    if (!face_ || FT_Load_Glyph(face_.get(), glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0) return nullptr;
    FT_GlyphSlot slot = face_->glyph;
    return slot->format == FT_GLYPH_FORMAT_OUTLINE && slot->outline.n_points > 0 ? &slot->outline : nullptr;
}

GlyphOutlines::GlyphOutlines(text::FontFaces& faces) : faces_(faces) {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) throw std::bad_alloc();
    freeType_.reset(library);
}

FontOutlines& GlyphOutlines::ofFont(text::FontId font) {
    if (font >= fonts_.size()) fonts_.resize(font + 1);
    auto& outlines = fonts_[font];
    if (!outlines) outlines = std::make_unique<FontOutlines>(faces_.face(font), freeType_.get());
    return *outlines;
}

void addOutline(cairo_t* cairo, FontOutlines& font, std::uint32_t glyph, double size, Point pen) {
    FT_Outline* outline = font.outline(glyph);
    if (outline == nullptr) return;
    static constexpr FT_Outline_Funcs sink{
        PathSink::moveTo, PathSink::lineTo, PathSink::conicTo, PathSink::cubicTo, 0, 0};
    PathSink path{cairo, size / font.unitsPerEm(), pen};
    FT_Outline_Decompose(outline, &sink, &path);
    cairo_close_path(cairo);
}

}  // namespace tavrin::paint
