// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/paint/text/emoji_pictures.h"
#include "tavrin/platform/paint/text/glyph_outlines.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/text/visual_line.h"

namespace tavrin::paint {

/// What a text covers.
struct TextInk {
    Rect box = {};  ///< empty where it draws nothing
    /// How far from where it stands a glyph reaches, in the text's sizes.
    double reach = 0;
};

/// What glyphs and texts cover, however little: the boxes of the outlines and pictures that are drawn. Those of glyphs
/// are kept.
class GlyphInk {
public:
    GlyphInk(GlyphOutlines& outlines, EmojiPictures& pictures) : outlines_(outlines), pictures_(pictures) {}

    /// Of a text, in points from where it is drawn; `width` is the room that its lines are aligned in.
    [[nodiscard]] TextInk ofText(const text::TextBlock::Lines& lines, double width);

private:
    /// Edges in parts of an em, y downwards; of nothing the first lie beyond the others.
    struct Box {
        float x0;
        float y0;
        float x1;
        float y1;
        bool isKnown;
    };
    const Box& of(text::FontId font, std::uint32_t glyph, bool emoji);

    GlyphOutlines& outlines_;
    EmojiPictures& pictures_;
    std::vector<std::vector<Box>> fonts_;
    std::vector<text::Piece> pieces_;
};

}  // namespace tavrin::paint
