// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/glyph_ink.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include FT_OUTLINE_H

#include "tavrin/platform/foundation/budget/meter.h"

namespace tavrin::paint {

namespace {

constexpr float beyond = std::numeric_limits<float>::infinity();

}  // namespace

const GlyphInk::Box& GlyphInk::of(text::FontId font, std::uint32_t glyph, bool emoji) {
    if (font >= fonts_.size()) fonts_.resize(font + 1);
    std::vector<Box>& boxes = fonts_[font];
    if (glyph >= boxes.size()) boxes.resize(glyph + std::size_t{1}, {beyond, beyond, -beyond, -beyond, false});
    Box& box = boxes[glyph];
    if (box.isKnown) return box;
    box.isKnown = true;
    if (emoji) {
        const auto [x, y, width, height] = pictures_.box(font, glyph);
        box = {static_cast<float>(x), static_cast<float>(y), static_cast<float>(x + width),
               static_cast<float>(y + height), true};
    } else {
        FontOutlines& outlines = outlines_.ofFont(font);
        if (FT_Outline* const outline = outlines.outline(glyph)) {
            FT_BBox edges;
            FT_Outline_Get_CBox(outline, &edges);
            const auto inEm = [&](FT_Pos units) {
                return static_cast<float>(static_cast<double>(units) / outlines.unitsPerEm());
            };
            box = {inEm(edges.xMin), -inEm(edges.yMax), inEm(edges.xMax), -inEm(edges.yMin), true};
        }
    }
    return box;
}

TextInk GlyphInk::ofText(const text::TextBlock::Lines& lines, double width) {
    const text::ShapedText& text = *lines.text;
    double x0 = beyond;
    double y0 = beyond;
    double x1 = -beyond;
    double y1 = -beyond;
    double reach = 0;
    for (std::size_t i = 0; i < lines.broken->lines.size(); ++i) {
        const text::Line& line = lines.broken->lines[i];
        constexpr std::size_t unitsInStep = 4;
        Meter::ofThisThread().step(1 + (line.unitEnd - line.unitBegin) / unitsInStep);
        const double left = text::leftEdge(text, line, width);
        const double baseline = lines.broken->firstBaseline + static_cast<double>(i) * text.linePitch();
        text::placePieces(text, line, pieces_);
        for (const text::Piece& piece : pieces_) {
            double pen = left + piece.x;
            for (const text::Glyph& glyph : piece.glyphs) {
                const Box& box = of(piece.font, glyph.id, piece.emoji);
                const double x = pen + static_cast<double>(glyph.x);
                const double y = baseline + static_cast<double>(glyph.y);
                x0 = std::min(x0, x + static_cast<double>(box.x0) * text.size);
                y0 = std::min(y0, y + static_cast<double>(box.y0) * text.size);
                x1 = std::max(x1, x + static_cast<double>(box.x1) * text.size);
                y1 = std::max(y1, y + static_cast<double>(box.y1) * text.size);
                pen += static_cast<double>(glyph.advance);
                if (box.x0 > box.x1) continue;  // nothing
                const double offset = std::max(std::abs(glyph.x), std::abs(glyph.y)) / text.size;
                for (const float edge : {box.x0, box.y0, box.x1, box.y1})
                    reach = std::max(reach, std::abs(static_cast<double>(edge)) + offset);
            }
        }
    }
    if (!(x0 <= x1 && y0 <= y1)) return {};
    return {{{x0, y0}, {x1 - x0, y1 - y0}}, reach};
}

}  // namespace tavrin::paint
