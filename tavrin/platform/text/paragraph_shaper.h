// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include <hb.h>

#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/itemizer.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/ui/font.h"

namespace tavrin::text {

/// Shapes one itemized paragraph and adds it to a text.
class ParagraphShaper {
public:
    ParagraphShaper(FontFaces& faces, hb_buffer_t* buffer, const Font& font, ShapedText& shaped)
        : faces_(faces), buffer_(buffer), font_(font), shaped_(shaped) {}

    void add(const Paragraph& paragraph, const ItemizedParagraph& itemized);

private:
    void shapeItem(const Item& item);
    std::uint32_t addGlyphs(double pointsPerUnit);
    void addUnits(const Item& item, std::uint32_t firstGlyph);
    void beginUnit(std::uint32_t character, std::uint32_t glyph);
    void measureUnits(const Item& item, std::size_t firstUnit);

    FontFaces& faces_;
    hb_buffer_t* buffer_;
    const Font& font_;
    ShapedText& shaped_;

    const ItemizedParagraph* itemized_ = nullptr;
    std::u32string characters_;  ///< of the paragraph, tabs replaced by spaces
    std::vector<bool> isTab_;
    std::vector<std::uint32_t> unitCharacters_;  ///< where the units of the item begin
    std::uint32_t character_ = 0;                ///< the character that `byte_` belongs to
    std::uint32_t byte_ = 0;
};

}  // namespace tavrin::text
