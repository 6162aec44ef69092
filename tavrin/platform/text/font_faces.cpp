// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/font_faces.h"

#include <algorithm>
#include <new>

#include FT_OUTLINE_H

namespace tavrin::text {

FontFace::FontFace(const FontSource& source, FT_Library freeType) : source_(source), freeType_(freeType) {
    const Handle<hb_face_t, hb_face_destroy> face(hb_face_create(source.bytes(), source.faceIndex()));
    unitsPerEm_ = hb_face_get_upem(face.get());
    font_.reset(hb_font_create(face.get()));
    hb_font_make_immutable(font_.get());
}

hb_codepoint_t FontFace::glyphOf(char32_t character) const {
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(font_.get(), character, &glyph) ? glyph : 0;
}

FT_Outline* FontFace::outline(hb_codepoint_t glyph) {
    if (!outlinesTried_) {
        outlinesTried_ = true;
        unsigned length = 0;
        const char* bytes = hb_blob_get_data(source_.bytes(), &length);
        FT_Face face = nullptr;
        if (FT_New_Memory_Face(freeType_, reinterpret_cast<const FT_Byte*>(bytes), static_cast<FT_Long>(length),
                               static_cast<FT_Long>(source_.faceIndex()), &face) == 0)
            outlines_.reset(face);
    }
    if (!outlines_ || FT_Load_Glyph(outlines_.get(), glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0) return nullptr;
    FT_GlyphSlot slot = outlines_->glyph;
    return slot->format == FT_GLYPH_FORMAT_OUTLINE && slot->outline.n_points > 0 ? &slot->outline : nullptr;
}

FontFaces::FontFaces(const FontCatalog& catalog) : catalog_(catalog) {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) throw std::bad_alloc();
    freeType_.reset(library);
}

FontFace& FontFaces::face(FontId font) {
    if (font >= faces_.size()) faces_.resize(font + 1);
    auto& face = faces_[font];
    if (!face) face = std::make_unique<FontFace>(catalog_.source(font), freeType_.get());
    return *face;
}

std::size_t FontFaces::openCount() const {
    return static_cast<std::size_t>(
        std::count_if(faces_.begin(), faces_.end(), [](const auto& f) { return f != nullptr; }));
}

}  // namespace tavrin::text
