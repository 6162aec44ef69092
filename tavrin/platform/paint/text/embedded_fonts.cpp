// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/embedded_fonts.h"

#include <memory>

#include <cairo-ft.h>

namespace tavrin::paint {
namespace {

/// A face in a library of its own: Cairo keeps fonts alive as long as it likes and lets them go in any thread.
struct OwnFace {
    Handle<FT_LibraryRec_, FT_Done_FreeType> library;
    Handle<hb_blob_t, hb_blob_destroy> bytes;
    Handle<FT_FaceRec_, FT_Done_Face> face;
};

std::unique_ptr<OwnFace> openFace(const text::FontSource& source) {
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

Handle<cairo_font_face_t, cairo_font_face_destroy> makeFont(const text::FontSource& source) {
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

std::vector<cairo_text_cluster_t> clustersOf(const text::Piece& piece) {
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

void EmbeddedFonts::show(cairo_t* cairo, double size, const text::Piece& piece, Point pen) {
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

cairo_font_face_t* EmbeddedFonts::fontOf(text::FontId font) {
    if (font >= fonts_.size()) fonts_.resize(font + 1);
    if (!fonts_[font]) fonts_[font] = makeFont(faces_.catalog().source(font));
    return fonts_[font].get();
}

}  // namespace tavrin::paint
