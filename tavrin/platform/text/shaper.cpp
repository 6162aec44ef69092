// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/shaper.h"

#include "tavrin/platform/text/font_metrics.h"
#include "tavrin/platform/text/itemizer.h"
#include "tavrin/platform/text/paragraph_shaper.h"
#include "tavrin/platform/text/paragraphs.h"

namespace tavrin::text {

Shaper::Shaper(FontFaces& faces) : faces_(faces), chooser_(faces), buffer_(hb_buffer_create()) {}

std::shared_ptr<const ShapedText> Shaper::shape(std::string_view text, const Font& font) {
    auto shaped = std::make_shared<ShapedText>();
    shaped->size = drawnSize(font.size);
    shaped->lineHeight = shaped->size * lineHeightOfSize;
    shaped->leading = drawnLeading(font.leading);
    if (shaped->size == 0) return shaped;

    setEllipsis(font, *shaped);
    shaped->utf8.reserve(text.size());
    shaped->units.reserve(text.size());
    shaped->glyphs.reserve(text.size());
    ParagraphShaper shaper(faces_, buffer_.get(), font, *shaped);
    ParagraphReader reader(text);
    for (Paragraph paragraph; reader.next(paragraph);)
        shaper.add(paragraph,
                   paragraph.characters.empty() ? ItemizedParagraph{} : itemize(paragraph, font.weight, chooser_));
    return shaped;
}

void Shaper::setEllipsis(const Font& font, ShapedText& shaped) {
    constexpr char32_t ellipsis = 0x2026;
    FontContext context;
    context.weight = font.weight;
    shaped.ellipsisFont = chooser_.choose({&ellipsis, 1}, context);
    const FontFace& face = faces_.face(shaped.ellipsisFont);
    shaped.ellipsis.id = face.glyphOf(ellipsis);
    const double units = hb_font_get_glyph_h_advance(face.shaper(), shaped.ellipsis.id);
    shaped.ellipsis.advance =
        static_cast<float>(units * shaped.size / face.unitsPerEm() + letterSpacing(shaped.size, font.weight));
}

}  // namespace tavrin::text
