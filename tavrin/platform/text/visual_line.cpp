// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/visual_line.h"

#include <algorithm>
#include <cmath>

#include "tavrin/platform/text/bidi.h"

namespace tavrin::text {
namespace {

Piece pieceOf(const ShapedText& text, const Run& run, std::uint32_t begin, std::uint32_t end) {
    Piece piece;
    piece.font = run.font;
    piece.emoji = run.emoji;
    piece.rightToLeft = run.level % 2 != 0;
    const Unit& first = text.units[begin];
    const Unit& last = text.units[end - 1];
    const Unit& leftmost = piece.rightToLeft ? last : first;
    const Unit& rightmost = piece.rightToLeft ? first : last;
    piece.glyphs =
        std::span(text.glyphs).subspan(leftmost.glyph, rightmost.glyph + rightmost.glyphCount - leftmost.glyph);
    piece.units = std::span(text.units).subspan(begin, end - begin);
    piece.utf8 = std::string_view(text.utf8).substr(first.byte, text.endByte(end - 1) - first.byte);
    return piece;
}

Piece ellipsisPiece(const ShapedText& text) {
    static constexpr Unit unit{0, 0, 1};
    return {text.ellipsisFont, false, false, 0, {&text.ellipsis, 1}, {&unit, 1}, "\u2026"};
}

void addLogicalPieces(const ShapedText& text, const Line& line, std::vector<Piece>& pieces,
                      std::vector<std::uint8_t>& levels) {
    const auto firstRun = text.runs.begin() + (line.paragraph == 0 ? 0 : text.paragraphs[line.paragraph - 1].runEnd);
    const auto lastRun = text.runs.begin() + text.paragraphs[line.paragraph].runEnd;
    auto run = std::upper_bound(firstRun, lastRun, line.unitBegin,
                                [](std::uint32_t unit, const Run& r) { return unit < r.unitEnd; });
    for (std::uint32_t begin = line.unitBegin; begin < line.unitEnd; ++run) {
        const std::uint32_t end = std::min(run->unitEnd, line.unitEnd);
        pieces.push_back(pieceOf(text, *run, begin, end));
        levels.push_back(run->level);
        begin = end;
    }
}

}  // namespace

double leftEdge(const ShapedText& text, const Line& line, double width) {
    const bool isTrailing = text.paragraphs[line.paragraph].level % 2 != 0 && std::isfinite(width);
    return isTrailing ? width - line.width : 0;
}

void placePieces(const ShapedText& text, const Line& line, std::vector<Piece>& pieces) {
    pieces.clear();
    std::vector<std::uint8_t> levels;
    addLogicalPieces(text, line, pieces, levels);
    if (line.ellipsis) {
        pieces.push_back(ellipsisPiece(text));
        levels.push_back(text.paragraphs[line.paragraph].level);
    }
    if (std::any_of(levels.begin(), levels.end(), [](std::uint8_t level) { return level > 0; })) {
        std::vector<Piece> logical;
        logical.swap(pieces);
        for (const std::uint32_t i : visualOrder(levels)) pieces.push_back(logical[i]);
    }
    double x = 0;
    for (auto& piece : pieces) {
        piece.x = x;
        for (const auto& glyph : piece.glyphs) x += static_cast<double>(glyph.advance);
    }
}

}  // namespace tavrin::text
