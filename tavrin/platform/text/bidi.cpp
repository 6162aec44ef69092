// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/bidi.h"

#include <algorithm>
#include <numeric>

#include <fribidi.h>

#include "tavrin/platform/foundation/budget/metering.h"

namespace tavrin::text {
namespace {

/// Whether a character can turn the order of its neighbours.
bool mayRunRightToLeft(char32_t c) {
    if (c < 0x590) return false;
    return c < 0x900 || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) ||
           (c >= 0xFB1D && c <= 0xFDFF) || (c >= 0xFE70 && c <= 0xFEFF) || (c >= 0x10800 && c <= 0x10FFF) ||
           (c >= 0x1E800 && c <= 0x1EFFF);
}

/// FriBidi takes quadratic time where isolates and brackets follow each other by the thousand. So they count for many
/// characters here. A piece is as large as `largePiece` before it ends where nothing is lost, and never much larger
/// than `largestPiece`.
constexpr std::size_t sizeOfPaired = 64;
constexpr std::size_t largePiece = std::size_t{512} * sizeOfPaired;
constexpr std::size_t largestPiece = 2 * largePiece;

/// A paragraph as FriBidi sees it, resolved in pieces that it is quick with.
///
/// 1. The direction is that of the whole paragraph.
/// 2. A large piece ends after the next strong character that stands in no embedding, isolate or pair of brackets. The
///    next piece begins with that character once more: of what came before, nothing else has a say in what follows.
/// 3. Where there is no such place, a piece that is too large ends all the same. What follows begins as a paragraph
/// does.
class PieceByPiece {
public:
    explicit PieceByPiece(std::u32string_view paragraph)
        : types_(paragraph.size()), brackets_(paragraph.size()), levels_(paragraph.size()) {
        const std::vector<FriBidiChar> characters(paragraph.begin(), paragraph.end());
        fribidi_get_bidi_types(characters.data(), length(), types_.data());
        fribidi_get_bracket_types(characters.data(), length(), types_.data(), brackets_.data());
        direction_ = fribidi_get_par_direction(types_.data(), length());
    }

    BidiLevels run() {
        BidiLevels result;
        for (std::size_t begin = 0; begin < types_.size(); ++result.pieces) {
            const std::size_t end = pieceEnd(begin);
            if (!resolve(begin, end)) return {};
            const bool goesOn = end < types_.size() && isPlaceToEnd(end - 1) && end - 1 > begin;
            begin = goesOn ? end - 1 : end;
            checkBudget();
        }
        result.base = FRIBIDI_IS_RTL(direction_) ? 1 : 0;
        result.levels.resize(levels_.size());
        std::transform(levels_.begin(), levels_.end(), result.levels.begin(),
                       [](FriBidiLevel level) { return static_cast<std::uint8_t>(std::clamp<int>(level, 0, 127)); });
        return result;
    }

private:
    [[nodiscard]] FriBidiStrIndex length() const { return static_cast<FriBidiStrIndex>(types_.size()); }

    [[nodiscard]] bool isPlaceToEnd(std::size_t at) const {
        return embeddings_ == 0 && isolates_ == 0 && openBrackets_ == 0 && FRIBIDI_IS_LETTER(types_[at]);
    }

    /// Where the piece that begins at `begin` ends; afterwards what is open there is known.
    std::size_t pieceEnd(std::size_t begin) {
        embeddings_ = isolates_ = openBrackets_ = 0;
        std::size_t size = 0;
        std::size_t at = begin;
        while (at < types_.size() && size < largestPiece) {
            size += enter(at++) ? sizeOfPaired : 1;
            if (size >= largePiece && isPlaceToEnd(at - 1)) break;
        }
        return at;
    }

    /// Keeps count of what is open; whether the character is an isolate's or a bracket. What begins inside of an
    /// isolate ends with it.
    bool enter(std::size_t at) {
        const FriBidiCharType type = types_[at];
        const FriBidiBracketType bracket = brackets_[at];
        const bool isBracket = bracket != FRIBIDI_NO_BRACKET;
        if (type == FRIBIDI_TYPE_PDI) {
            close(isolates_);
        } else if (FRIBIDI_IS_ISOLATE(type)) {
            ++isolates_;
        } else if (isolates_ > 0) {
            return isBracket;
        } else if (type == FRIBIDI_TYPE_PDF) {
            close(embeddings_);
        } else if (FRIBIDI_IS_EXPLICIT(type)) {
            ++embeddings_;
        } else if (isBracket && FRIBIDI_IS_BRACKET_OPEN(bracket)) {
            ++openBrackets_;
        } else if (isBracket) {
            close(openBrackets_);
        }
        return isBracket || FRIBIDI_IS_ISOLATE(type);
    }

    static void close(std::size_t& open) { open -= std::min<std::size_t>(open, 1); }

    bool resolve(std::size_t begin, std::size_t end) {
        FriBidiParType direction = direction_;
        return fribidi_get_par_embedding_levels_ex(types_.data() + begin, brackets_.data() + begin,
                                                   static_cast<FriBidiStrIndex>(end - begin), &direction,
                                                   levels_.data() + begin) != 0;
    }

    std::vector<FriBidiCharType> types_;
    std::vector<FriBidiBracketType> brackets_;
    std::vector<FriBidiLevel> levels_;
    FriBidiParType direction_ = FRIBIDI_PAR_ON;
    std::size_t embeddings_ = 0;
    std::size_t isolates_ = 0;
    std::size_t openBrackets_ = 0;
};

}  // namespace

BidiLevels bidiLevels(std::u32string_view paragraph) {
    if (std::none_of(paragraph.begin(), paragraph.end(), mayRunRightToLeft)) return {};
    return PieceByPiece(paragraph).run();
}

/// From the highest level down to 1, each stretch of pieces of at least that level is reversed.
std::vector<std::uint32_t> visualOrder(const std::vector<std::uint8_t>& levels) {
    std::vector<std::uint32_t> order(levels.size());
    std::iota(order.begin(), order.end(), 0U);
    if (levels.empty()) return order;
    for (int level = *std::max_element(levels.begin(), levels.end()); level > 0; --level) {
        for (std::size_t begin = 0; begin < order.size();) {
            if (levels[begin] < level) {
                ++begin;
                continue;
            }
            std::size_t end = begin;
            while (end < order.size() && levels[end] >= level) ++end;
            std::reverse(order.begin() + static_cast<std::ptrdiff_t>(begin),
                         order.begin() + static_cast<std::ptrdiff_t>(end));
            begin = end;
        }
    }
    return order;
}

}  // namespace tavrin::text
