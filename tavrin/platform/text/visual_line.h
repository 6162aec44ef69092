// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "tavrin/platform/text/shaped_text.h"

namespace tavrin::text {

/// Neighbouring glyphs of one run where they stand in a line.
struct Piece {
    FontId font = 0;
    bool emoji = false;
    bool rightToLeft = false;
    double x = 0;  ///< of the first pen, in points from the line's left end
    std::span<const Glyph> glyphs;
    std::span<const Unit> units;  ///< in logical order
    std::string_view utf8;        ///< what the units were shaped from
};

/// Where a line begins that is aligned in a room of so many points: at its left, or, in a paragraph from right to left,
/// so that it ends at its right.
[[nodiscard]] double leftEdge(const ShapedText& text, const Line& line, double width);

/// Puts the pieces of a line from left to right into `pieces`.
void placePieces(const ShapedText& text, const Line& line, std::vector<Piece>& pieces);

}  // namespace tavrin::text
