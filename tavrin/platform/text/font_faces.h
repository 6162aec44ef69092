// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include <hb.h>

#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/text/font_catalog.h"

namespace tavrin::text {

/// One opened font of one engine. Shapes in font units, so that one object serves every size.
class FontFace {
public:
    explicit FontFace(const FontSource& source);

    [[nodiscard]] hb_font_t* shaper() const { return font_.get(); }
    [[nodiscard]] double unitsPerEm() const { return unitsPerEm_; }
    [[nodiscard]] bool covers(char32_t character) const { return glyphOf(character) != 0; }
    /// The character's own glyph; 0 when the font has none.
    [[nodiscard]] hb_codepoint_t glyphOf(char32_t character) const;
    [[nodiscard]] const FontSource& source() const { return source_; }

private:
    const FontSource& source_;
    Handle<hb_font_t, hb_font_destroy> font_;
    double unitsPerEm_ = 1000;
};

/// The fonts that one engine has opened, each when it is first needed.
class FontFaces {
public:
    explicit FontFaces(const FontCatalog& catalog) : catalog_(catalog) {}

    [[nodiscard]] const FontCatalog& catalog() const { return catalog_; }
    FontFace& face(FontId font);
    [[nodiscard]] std::size_t openCount() const;

private:
    const FontCatalog& catalog_;
    std::vector<std::unique_ptr<FontFace>> faces_;
};

}  // namespace tavrin::text
