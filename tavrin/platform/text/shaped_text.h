// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/text/font_catalog.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::text {

/// A glyph in points; y grows downwards.
struct Glyph {
    std::uint32_t id = 0;
    float advance = 0;
    float x = 0;  ///< offset from where the pen stands
    float y = 0;

    friend bool operator==(const Glyph&, const Glyph&) = default;
};

/// What a line is never broken inside of: a grapheme, or several that share glyphs.
struct Unit {
    std::uint32_t byte = 0;   ///< where its characters begin in the text's UTF-8
    std::uint32_t glyph = 0;  ///< its glyphs, left to right
    std::uint32_t glyphCount = 0;
    float advance = 0;
    bool breakBefore = false;  ///< whether a line may break before it
    bool white = false;        ///< white space hangs at a line's end

    friend bool operator==(const Unit&, const Unit&) = default;
};

/// Units that stand side by side in one font and one direction. Right-to-left runs have their glyphs left to right.
struct Run {
    FontId font = 0;
    std::uint8_t level = 0;
    bool emoji = false;
    std::uint32_t unitBegin = 0;
    std::uint32_t unitEnd = 0;

    friend bool operator==(const Run&, const Run&) = default;
};

struct ShapedParagraph {
    std::uint8_t level = 0;
    std::uint32_t unitEnd = 0;
    std::uint32_t runEnd = 0;

    friend bool operator==(const ShapedParagraph&, const ShapedParagraph&) = default;
};

/// A line of a text broken for some room.
struct Line {
    std::uint32_t paragraph = 0;
    std::uint32_t unitBegin = 0;
    std::uint32_t unitEnd = 0;  ///< without the white space that hangs
    bool ellipsis = false;
    double width = 0;  ///< of what is drawn, in points, with the ellipsis
    double blank = 0;  ///< of the white space that hangs

    friend bool operator==(const Line&, const Line&) = default;
};

struct BrokenText {
    std::vector<Line> lines;
    Size size;
    double firstBaseline = 0;  ///< from the top, in points; a pixel's edge
    bool truncated = false;

    friend bool operator==(const BrokenText&, const BrokenText&) = default;
};

/// A text shaped once, in logical order. Immutable but for its memory of the last ways it was broken.
class ShapedText {
public:
    double size = 0;
    double lineHeight = 0;
    double leading = 0;  ///< between two lines
    std::string utf8;    ///< valid, without line breaks
    std::vector<ShapedParagraph> paragraphs;
    std::vector<Run> runs;
    std::vector<Unit> units;
    std::vector<Glyph> glyphs;
    FontId ellipsisFont = 0;
    Glyph ellipsis;

    /// The memory it takes, without what it remembers.
    [[nodiscard]] std::size_t bytes() const;
    /// An estimate of what it may come to take for what it remembers.
    [[nodiscard]] std::size_t memoryBytes() const;
    /// From one baseline to the next, in points.
    [[nodiscard]] double linePitch() const { return lineHeight + leading; }
    [[nodiscard]] std::size_t endByte(std::size_t unit) const {
        return unit + 1 < units.size() ? units[unit + 1].byte : utf8.size();
    }

    /// The text broken for a room, as remembered; null when it is not.
    [[nodiscard]] std::shared_ptr<const BrokenText> recall(const TextRoom& room) const;
    void remember(const TextRoom& room, std::shared_ptr<const BrokenText> broken) const;

private:
    struct Memory {
        TextRoom room;
        std::shared_ptr<const BrokenText> broken;
    };
    mutable std::array<Memory, 4> memory_;
    mutable std::size_t nextMemory_ = 0;
};

struct TextBlock::Lines {
    std::shared_ptr<const ShapedText> text;
    std::shared_ptr<const BrokenText> broken;
    HeldBytes held;
};

}  // namespace tavrin::text
