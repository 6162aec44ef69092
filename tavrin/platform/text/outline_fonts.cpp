// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/outline_fonts.h"

#include <memory>

#include <cairo-ft.h>

#include FT_OUTLINE_H

namespace tavrin::text {
namespace {

/// A face in a library of its own: Cairo keeps fonts alive as long as it likes and lets them go in any thread.
struct OwnFace {
    Handle<FT_LibraryRec_, FT_Done_FreeType> library;
    Handle<hb_blob_t, hb_blob_destroy> bytes;
    Handle<FT_FaceRec_, FT_Done_Face> face;
};

std::unique_ptr<OwnFace> openFace(const FontSource& source) {
    auto own = std::make_unique<OwnFace>();
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) return nullptr;
    own->library.reset(library);
    own->bytes.reset(hb_blob_reference(source.bytes()));
    unsigned length = 0;
    const char* bytes = hb_blob_get_data(own->bytes.get(), &length);
    FT_Face face = nullptr;
    if (FT_New_Memory_Face(library, reinterpret_cast<const FT_Byte*>(bytes), static_cast<FT_Long>(length),
                           static_cast<FT_Long>(source.faceIndex()), &face) != 0)
        return nullptr;
    own->face.reset(face);
    return own;
}

Handle<cairo_font_face_t, cairo_font_face_destroy> makeFont(const FontSource& source) {
    static const cairo_user_data_key_t ownerKey{};
    std::unique_ptr<OwnFace> own = openFace(source);
    if (!own) return nullptr;
    Handle<cairo_font_face_t, cairo_font_face_destroy> font(
        cairo_ft_font_face_create_for_ft_face(own->face.get(), FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP));
    const auto destroy = [](void* data) { delete static_cast<OwnFace*>(data); };
    if (cairo_font_face_set_user_data(font.get(), &ownerKey, own.get(), destroy) != CAIRO_STATUS_SUCCESS)
        return nullptr;
    static_cast<void>(own.release());  // the font face owns it now
    return font;
}

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

Handle<cairo_scaled_font_t, cairo_scaled_font_destroy> scaledFont(cairo_t* cairo, cairo_font_face_t* face,
                                                                  double size) {
    cairo_matrix_t fontMatrix;
    cairo_matrix_init_scale(&fontMatrix, size, size);
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo, &matrix);
    const Handle<cairo_font_options_t, cairo_font_options_destroy> options(cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    return Handle<cairo_scaled_font_t, cairo_scaled_font_destroy>(
        cairo_scaled_font_create(face, &fontMatrix, &matrix, options.get()));
}

std::vector<cairo_text_cluster_t> clustersOf(const Piece& piece) {
    std::vector<cairo_text_cluster_t> clusters(piece.units.size());
    const std::uint32_t firstByte = piece.units.front().byte;
    for (std::size_t i = 0; i < clusters.size(); ++i) {
        const std::size_t end = i + 1 < clusters.size() ? piece.units[i + 1].byte - firstByte : piece.utf8.size();
        clusters[i].num_bytes = static_cast<int>(end - (piece.units[i].byte - firstByte));
        clusters[i].num_glyphs = static_cast<int>(piece.units[i].glyphCount);
    }
    return clusters;
}

}  // namespace

void OutlineFonts::show(cairo_t* cairo, double size, const Piece& piece, Point pen) {
    cairo_font_face_t* face = fontOf(piece.font);
    if (face == nullptr) return;
    const auto font = scaledFont(cairo, face, size);
    if (cairo_scaled_font_status(font.get()) != CAIRO_STATUS_SUCCESS) return;
    std::vector<cairo_glyph_t> glyphs;
    glyphs.reserve(piece.glyphs.size());
    for (const auto& glyph : piece.glyphs) {
        glyphs.push_back({glyph.id, pen.x + static_cast<double>(glyph.x), pen.y + static_cast<double>(glyph.y)});
        pen.x += static_cast<double>(glyph.advance);
    }
    cairo_set_scaled_font(cairo, font.get());
    if (!cairo_surface_has_show_text_glyphs(cairo_get_target(cairo)))
        return cairo_show_glyphs(cairo, glyphs.data(), static_cast<int>(glyphs.size()));
    const auto clusters = clustersOf(piece);
    cairo_show_text_glyphs(cairo, piece.utf8.data(), static_cast<int>(piece.utf8.size()), glyphs.data(),
                           static_cast<int>(glyphs.size()), clusters.data(), static_cast<int>(clusters.size()),
                           piece.rightToLeft ? CAIRO_TEXT_CLUSTER_FLAG_BACKWARD : cairo_text_cluster_flags_t{});
}

cairo_font_face_t* OutlineFonts::fontOf(FontId font) {
    if (font >= fonts_.size()) fonts_.resize(font + 1);
    if (!fonts_[font]) fonts_[font] = makeFont(faces_.catalog().source(font));
    return fonts_[font].get();
}

void addOutline(cairo_t* cairo, FontFace& face, std::uint32_t glyph, double size, Point pen) {
    FT_Outline* outline = face.outline(glyph);
    if (outline == nullptr) return;
    static constexpr FT_Outline_Funcs sink{
        PathSink::moveTo, PathSink::lineTo, PathSink::conicTo, PathSink::cubicTo, 0, 0};
    PathSink path{cairo, size / face.unitsPerEm(), pen};
    FT_Outline_Decompose(outline, &sink, &path);
    cairo_close_path(cairo);
}

}  // namespace tavrin::text
