// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/emoji.h"

#include <algorithm>
#include <iterator>

namespace tavrin::text {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// Emoji_Presentation of Unicode 15, in ascending order.
constexpr Range emojiByDefault[] = {
    {0x231A, 0x231B},   {0x23E9, 0x23EC},   {0x23F0, 0x23F0},   {0x23F3, 0x23F3},   {0x25FD, 0x25FE},
    {0x2614, 0x2615},   {0x2648, 0x2653},   {0x267F, 0x267F},   {0x2693, 0x2693},   {0x26A1, 0x26A1},
    {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},   {0x26CE, 0x26CE},   {0x26D4, 0x26D4},
    {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},   {0x26FA, 0x26FA},   {0x26FD, 0x26FD},
    {0x2705, 0x2705},   {0x270A, 0x270B},   {0x2728, 0x2728},   {0x274C, 0x274C},   {0x274E, 0x274E},
    {0x2753, 0x2755},   {0x2757, 0x2757},   {0x2795, 0x2797},   {0x27B0, 0x27B0},   {0x27BF, 0x27BF},
    {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},   {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF},
    {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F1E6, 0x1F1FF}, {0x1F201, 0x1F201}, {0x1F21A, 0x1F21A},
    {0x1F22F, 0x1F22F}, {0x1F232, 0x1F236}, {0x1F238, 0x1F23A}, {0x1F250, 0x1F251}, {0x1F300, 0x1F320},
    {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3},
    {0x1F3E0, 0x1F3F0}, {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC},
    {0x1F4FF, 0x1F53D}, {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567}, {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596},
    {0x1F5A4, 0x1F5A4}, {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2},
    {0x1F6D5, 0x1F6D7}, {0x1F6DC, 0x1F6DF}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC}, {0x1F7E0, 0x1F7EB},
    {0x1F7F0, 0x1F7F0}, {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945}, {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FA7C},
    {0x1FA80, 0x1FA88}, {0x1FA90, 0x1FABD}, {0x1FABF, 0x1FAC5}, {0x1FACE, 0x1FADB}, {0x1FAE0, 0x1FAE8},
    {0x1FAF0, 0x1FAF8},
};

/// From here on even those that Unicode would draw as text (weather, for one) are known only as pictures.
constexpr char32_t firstPictograph = 0x1F000;

constexpr char32_t joiner = 0x200D;
constexpr char32_t keycap = 0x20E3;
constexpr char32_t textSelector = 0xFE0E;
constexpr char32_t emojiSelector = 0xFE0F;

bool isSkinTone(char32_t c) { return c >= 0x1F3FB && c <= 0x1F3FF; }
bool isKeycapBase(char32_t c) { return (c >= '0' && c <= '9') || c == '#' || c == '*'; }

}  // namespace

bool isEmojiByDefault(char32_t character) {
    if (character < emojiByDefault[0].first) return false;
    const auto* range = std::lower_bound(std::begin(emojiByDefault), std::end(emojiByDefault), character,
                                         [](const Range& r, char32_t c) { return r.last < c; });
    return range != std::end(emojiByDefault) && range->first <= character;
}

bool wantsEmoji(std::u32string_view grapheme) {
    if (grapheme.empty()) return false;
    const char32_t base = grapheme[0];
    const char32_t next = grapheme.size() > 1 ? grapheme[1] : 0;
    if (next == textSelector) return false;
    if (isKeycapBase(base)) return grapheme.substr(1, 2).find(keycap) != std::u32string_view::npos;
    if (isEmojiByDefault(base) || base >= firstPictograph) return true;
    if (next == emojiSelector || isSkinTone(next)) return true;
    return next == joiner && grapheme.size() > 2 && grapheme[2] > 0x2000;  // a sequence that lost its selectors
}

}  // namespace tavrin::text
