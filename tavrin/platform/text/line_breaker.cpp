// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/line_breaker.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tavrin/platform/text/font_metrics.h"

namespace tavrin::text {
namespace {

constexpr double unlimited = std::numeric_limits<double>::infinity();

/// How much a length that was rounded to pixels may be short of the length itself.
double slackOf(const TextRoom& room) {
    return lengthTolerance * (room.scale > 0 ? std::max(1.0, 1 / room.scale) : 1.0);
}

std::size_t lineLimitOf(const TextRoom& room, const ShapedText& text) {
    double limit = unlimited;
    if (room.lineLimit) limit = static_cast<double>(std::max<std::int64_t>(1, *room.lineLimit));
    if (room.height && !std::isnan(*room.height)) {
        constexpr double roundingOfMany = 1 + 1e-12;
        const double lines = (*room.height + text.leading + slackOf(room)) / text.linePitch() * roundingOfMany;
        limit = std::min(limit, std::max(1.0, std::floor(lines)));
    }
    constexpr double most = 1e15;
    return static_cast<std::size_t>(std::min(limit, most));
}

class LineBreaker {
public:
    LineBreaker(const ShapedText& text, const TextRoom& room)
        : text_(text),
          room_(room),
          width_(room.width && !std::isnan(*room.width) ? *room.width : unlimited),
          widthWithSlack_(width_ + slackOf(room)),
          mostLines_(lineLimitOf(room, text)) {}

    BrokenText run() {
        std::uint32_t begin = 0;
        for (std::uint32_t i = 0; i < text_.paragraphs.size() && !isFull_; ++i) {
            paragraph_ = i;
            breakParagraph(begin, text_.paragraphs[i].unitEnd);
            begin = text_.paragraphs[i].unitEnd;
        }
        measure();
        return std::move(result_);
    }

private:
    void breakParagraph(std::uint32_t begin, std::uint32_t end) {
        bool isFirst = true;
        do {
            const std::uint32_t next = isFirst ? firstLineEnd(begin, end) : lineEnd(begin, end);
            isFirst = false;
            const bool isLast = result_.lines.size() + 1 == mostLines_;
            if (isLast && !isAllWhite(next)) {
                result_.lines.push_back(truncatedLine(begin, end));
                result_.truncated = true;
            } else {
                result_.lines.push_back(line(begin, next));
            }
            isFull_ = isLast;
            begin = next;
        } while (begin < end && !isFull_);
    }

    /// Where the line that begins at `begin` ends and the next one begins; past at least one unit.
    [[nodiscard]] std::uint32_t lineEnd(std::uint32_t begin, std::uint32_t end) const {
        if (width_ == unlimited) return end;
        double width = 0;
        std::uint32_t lastBreak = begin;
        for (std::uint32_t i = begin; i < end; ++i) {
            const Unit& unit = text_.units[i];
            if (unit.breakBefore && i > begin) lastBreak = i;
            width += static_cast<double>(unit.advance);
            if (unit.white || width <= widthWithSlack_ || i == begin) continue;
            if (lastBreak > begin && !isBlankBefore(begin, lastBreak)) return lastBreak;
            if (unit.advance > 0 && !isBlankBefore(begin, i)) return i;
        }
        return end;
    }

    /// In no width at all, blanks have no line of their own before a character.
    [[nodiscard]] bool isBlankBefore(std::uint32_t begin, std::uint32_t end) const {
        return width_ <= 0 && withoutBlanks(begin, end) == begin;
    }

    /// Where a paragraph's first line ends: greedily, unless that leaves a word alone.
    ///
    /// 1. The paragraph must break into exactly two lines, both of them shown, the second of one word.
    /// 2. The last word of the first line then moves down, too, if another one stays,
    /// 3. if both words fit there, and
    /// 4. if the two lines come closer to being as wide as each other.
    [[nodiscard]] std::uint32_t firstLineEnd(std::uint32_t begin, std::uint32_t end) const {
        const std::uint32_t second = lineEnd(begin, end);
        if (second == end || !text_.units[second].breakBefore || lineEnd(second, end) != end) return second;
        const std::size_t lines = result_.lines.size() + 2;
        const bool areShown = lines < mostLines_ || (lines == mostLines_ && isAllWhite(end));
        if (!areShown || lastWord(second, withoutBlanks(second, end)) != second) return second;

        const std::uint32_t moved = lastWord(begin, second);
        if (moved == begin) return second;
        const double above = drawnWidth(begin, second);
        const double below = drawnWidth(second, end);
        const double movedBelow = drawnWidth(moved, end);
        const bool isMoreEven = std::abs(drawnWidth(begin, moved) - movedBelow) < std::abs(above - below);
        return isMoreEven && movedBelow <= widthWithSlack_ ? moved : second;
    }

    /// Where the last word begins, of those that begin in a stretch; the stretch's begin where it is one word.
    [[nodiscard]] std::uint32_t lastWord(std::uint32_t begin, std::uint32_t end) const {
        while (end > begin + 1 && !text_.units[end - 1].breakBefore) --end;
        return end > begin + 1 ? end - 1 : begin;
    }

    [[nodiscard]] std::uint32_t withoutBlanks(std::uint32_t begin, std::uint32_t end) const {
        while (end > begin && text_.units[end - 1].white) --end;
        return end;
    }

    [[nodiscard]] double drawnWidth(std::uint32_t begin, std::uint32_t end) const {
        return widthOf(begin, withoutBlanks(begin, end));
    }

    [[nodiscard]] Line line(std::uint32_t begin, std::uint32_t end) const {
        const std::uint32_t drawnEnd = withoutBlanks(begin, end);
        return {paragraph_, begin, drawnEnd, false, widthOf(begin, drawnEnd), widthOf(drawnEnd, end)};
    }

    /// The line that begins at `begin` and ends in an ellipsis, with as much before it as fits.
    [[nodiscard]] Line truncatedLine(std::uint32_t begin, std::uint32_t end) const {
        const auto ellipsis = static_cast<double>(text_.ellipsis.advance);
        double width = ellipsis;
        std::uint32_t i = begin;
        for (; i < end; ++i) {
            width += static_cast<double>(text_.units[i].advance);
            if (width > widthWithSlack_ && !text_.units[i].white) break;
        }
        Line truncated = line(begin, i);
        truncated.ellipsis = true;
        truncated.width += ellipsis;
        truncated.blank = 0;
        return truncated;
    }

    [[nodiscard]] double widthOf(std::uint32_t begin, std::uint32_t end) const {
        double width = 0;
        for (std::uint32_t i = begin; i < end; ++i) width += static_cast<double>(text_.units[i].advance);
        return std::max(0.0, width);
    }

    /// Whether nothing that could be seen comes after.
    [[nodiscard]] bool isAllWhite(std::uint32_t begin) const {
        return std::all_of(text_.units.begin() + begin, text_.units.end(), [](const Unit& unit) { return unit.white; });
    }

    void measure() {
        double widest = 0;
        for (const auto& line : result_.lines) widest = std::max(widest, line.width + line.blank);
        const double height = static_cast<double>(result_.lines.size()) * text_.linePitch() - text_.leading;
        result_.size.width = std::min(roundedUpToPixels(widest, room_.scale), std::max(0.0, width_));
        result_.size.height = roundedUpToPixels(height, room_.scale);
        result_.firstBaseline = roundedToPixels(ascentOfSize * text_.size, room_.scale);
    }

    const ShapedText& text_;
    const TextRoom& room_;
    double width_;
    double widthWithSlack_;
    std::size_t mostLines_;
    std::uint32_t paragraph_ = 0;
    bool isFull_ = false;
    BrokenText result_;
};

}  // namespace

BrokenText breakLines(const ShapedText& text, const TextRoom& room) {
    if (text.size == 0) return {};
    return LineBreaker(text, room).run();
}

}  // namespace tavrin::text
