// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/font_faces.h"

#include <algorithm>

namespace tavrin::text {

FontFace::FontFace(const FontSource& source) : source_(source) {
    const Handle<hb_face_t, hb_face_destroy> face(hb_face_create(source.bytes(), source.faceIndex()));
    unitsPerEm_ = hb_face_get_upem(face.get());
    font_.reset(hb_font_create(face.get()));
    hb_font_make_immutable(font_.get());
}

hb_codepoint_t FontFace::glyphOf(char32_t character) const {
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(font_.get(), character, &glyph) ? glyph : 0;
}

FontFace& FontFaces::face(FontId font) {
    if (font >= faces_.size()) faces_.resize(font + 1);
    auto& face = faces_[font];
    if (!face) face = std::make_unique<FontFace>(catalog_.source(font));
    return *face;
}

std::size_t FontFaces::openCount() const {
    return static_cast<std::size_t>(
        std::count_if(faces_.begin(), faces_.end(), [](const auto& f) { return f != nullptr; }));
}

}  // namespace tavrin::text
