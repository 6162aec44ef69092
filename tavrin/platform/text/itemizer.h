// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include <hb.h>
#include <pango/pango-break.h>

#include "tavrin/platform/text/bidi.h"
#include "tavrin/platform/text/font_chooser.h"
#include "tavrin/platform/text/paragraphs.h"

namespace tavrin::text {

/// A stretch of a paragraph that is shaped at once: one level, one script, one font.
struct Item {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::uint8_t level = 0;
    hb_script_t script = HB_SCRIPT_COMMON;
    FontId font = 0;
    bool emoji = false;
};

/// A paragraph cut into items, in logical order.
struct ItemizedParagraph {
    std::uint8_t baseLevel = 0;
    std::vector<Item> items;
    /// One for each character and one for the end: where graphemes begin and where lines may break.
    std::vector<PangoLogAttr> breaks;

    [[nodiscard]] bool beginsGrapheme(std::size_t character) const { return breaks[character].is_cursor_position != 0; }
    [[nodiscard]] bool mayBreakBefore(std::size_t character) const { return breaks[character].is_line_break != 0; }
};

/// Cuts a paragraph; never inside a grapheme.
ItemizedParagraph itemize(const Paragraph& paragraph, Font::Weight weight, FontChooser& fonts);

}  // namespace tavrin::text
