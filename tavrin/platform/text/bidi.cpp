// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/bidi.h"

#include <algorithm>
#include <numeric>

#include <fribidi.h>

namespace tavrin::text {
namespace {

/// Whether a character can turn the order of its neighbours.
bool mayRunRightToLeft(char32_t c) {
    if (c < 0x590) return false;
    return c < 0x900 || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) ||
           (c >= 0xFB1D && c <= 0xFDFF) || (c >= 0xFE70 && c <= 0xFEFF) || (c >= 0x10800 && c <= 0x10FFF) ||
           (c >= 0x1E800 && c <= 0x1EFFF);
}

}  // namespace

BidiLevels bidiLevels(std::u32string_view paragraph) {
    BidiLevels result;
    if (std::none_of(paragraph.begin(), paragraph.end(), mayRunRightToLeft)) return result;

    const std::vector<FriBidiChar> characters(paragraph.begin(), paragraph.end());
    const auto length = static_cast<FriBidiStrIndex>(characters.size());
    std::vector<FriBidiCharType> types(characters.size());
    std::vector<FriBidiBracketType> brackets(characters.size());
    std::vector<FriBidiLevel> levels(characters.size());
    fribidi_get_bidi_types(characters.data(), length, types.data());
    fribidi_get_bracket_types(characters.data(), length, types.data(), brackets.data());
    FriBidiParType direction = FRIBIDI_PAR_ON;
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), length, &direction, levels.data()) == 0)
        return result;
    result.base = FRIBIDI_IS_RTL(direction) ? 1 : 0;
    result.levels.resize(levels.size());
    std::transform(levels.begin(), levels.end(), result.levels.begin(),
                   [](FriBidiLevel level) { return static_cast<std::uint8_t>(std::clamp<int>(level, 0, 127)); });
    return result;
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
