// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/itemizer.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/text/emoji.h"

namespace tavrin::text {
namespace {

/// Longer items are cut where a line may break, and the longest anywhere, so that shaping stays linear.
constexpr std::uint32_t longItem = 256;
constexpr std::uint32_t longestItem = 512;
/// A grapheme of more characters (a heap of combining marks) is cut into several items.
constexpr std::uint32_t longestGrapheme = 256;

bool belongsToNoScript(hb_script_t script) {
    return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED || script == HB_SCRIPT_UNKNOWN;
}

/// The script of each character; those without one take that of their neighbours.
std::vector<hb_script_t> scriptsOf(std::u32string_view characters) {
    auto* unicode = hb_unicode_funcs_get_default();
    std::vector<hb_script_t> scripts(characters.size());
    hb_script_t current = HB_SCRIPT_COMMON;
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const hb_script_t script = hb_unicode_script(unicode, characters[i]);
        if (!belongsToNoScript(script)) {
            if (current == HB_SCRIPT_COMMON) std::fill_n(scripts.begin(), i, script);
            current = script;
        }
        scripts[i] = current;
    }
    return scripts;
}

/// Where graphemes begin and lines may break in a text of so many characters as `breaks` has room for, and its end.
void findBreaks(std::string_view utf8, std::span<PangoLogAttr> breaks) {
    // The language is named so that the user's locale has no say.
    static PangoLanguage* const language = pango_language_from_string("en");
    pango_get_log_attrs(utf8.data(), static_cast<int>(utf8.size()), -1, language, breaks.data(),
                        static_cast<int>(breaks.size()));
}

/// Pango takes quadratic time for some long stretches without a blank. So a long paragraph is looked at through windows
/// of this many characters; those at a window's edges are there only for what stands between them. A window begins
/// where a grapheme does, so that flags and the like are told apart by the same characters as in the whole.
constexpr std::size_t windowLength = 4096;
constexpr std::size_t windowEdge = 256;

void findBreaksThroughWindows(const std::string& utf8, std::span<PangoLogAttr> breaks) {
    constexpr std::size_t step = windowLength - 2 * windowEdge;
    const std::size_t length = breaks.size() - 1;
    std::vector<PangoLogAttr> window(windowLength + 1);
    const char* first = utf8.data();
    for (std::size_t begin = 0;;) {
        const std::size_t count = std::min(windowLength, length - begin);
        const char* const last = g_utf8_offset_to_pointer(first, static_cast<glong>(count));
        findBreaks({first, last}, std::span(window).first(count + 1));
        // What is found at the window's end is the next one's to find better.
        const std::size_t edge = begin == 0 ? 0 : windowEdge;
        std::ranges::copy(std::span(window).first(count + 1).subspan(edge),
                          breaks.begin() + static_cast<std::ptrdiff_t>(begin + edge));
        if (begin + count == length) return;
        std::size_t next = step;
        while (next > step / 2 && !window[next].is_cursor_position) --next;
        first = g_utf8_offset_to_pointer(first, static_cast<glong>(next));
        begin += next;
        checkBudget();
    }
}

std::vector<PangoLogAttr> breaksOf(const Paragraph& paragraph) {
    std::vector<PangoLogAttr> breaks(paragraph.characters.size() + 1);
    if (paragraph.characters.size() <= windowLength) {
        findBreaks(paragraph.utf8, breaks);
    } else {
        findBreaksThroughWindows(paragraph.utf8, breaks);
    }
    breaks.front().is_cursor_position = 1;
    return breaks;
}

/// 1. Each character gets a bidi level and a script; Pango says where graphemes begin.
/// 2. Each grapheme gets a font: the colour font if it is wanted as a picture, else what the chooser finds.
/// 3. Neighbours of one level, one script and one font make an item, until it is long.
class Itemizer {
public:
    Itemizer(const Paragraph& paragraph, Font::Weight weight, FontChooser& fonts)
        : characters_(paragraph.characters),
          levels_(bidiLevels(characters_)),
          scripts_(scriptsOf(characters_)),
          fonts_(fonts) {
        context_.weight = weight;
        context_.han = hanFaceOf(characters_);
        result_.baseLevel = levels_.base;
        result_.breaks = breaksOf(paragraph);
        limitGraphemes();
    }

    ItemizedParagraph run() {
        const auto length = static_cast<std::uint32_t>(characters_.size());
        for (std::uint32_t begin = 0; begin < length;) {
            std::uint32_t end = begin + 1;
            while (end < length && !result_.beginsGrapheme(end)) ++end;
            addGrapheme(begin, end);
            begin = end;
        }
        return std::move(result_);
    }

private:
    void limitGraphemes() {
        std::size_t begin = 0;
        for (std::size_t i = 0; i < characters_.size(); ++i) {
            if (i - begin >= longestGrapheme) result_.breaks[i].is_cursor_position = 1;
            if (result_.beginsGrapheme(i)) begin = i;
        }
    }

    void addGrapheme(std::uint32_t begin, std::uint32_t end) {
        Item item = itemOf(begin, end);
        if (!result_.items.empty()) {
            Item& last = result_.items.back();
            const std::uint32_t length = begin - last.begin;
            const bool isTooLong = length >= longestItem || (length >= longItem && result_.mayBreakBefore(begin));
            if (!isTooLong && last.level == item.level && last.script == item.script && last.font == item.font) {
                last.end = end;
                return;
            }
        }
        result_.items.push_back(item);
    }

    Item itemOf(std::uint32_t begin, std::uint32_t end) {
        const std::u32string_view grapheme = characters_.substr(begin, end - begin);
        Item item{begin, end, levels_.at(begin), scripts_[begin]};
        if (wantsEmoji(grapheme)) {
            if (const auto font = fonts_.emojiFont(grapheme[0])) {
                item.font = *font;
                item.emoji = true;
                item.script = HB_SCRIPT_COMMON;
                context_.previous.reset();
                return item;
            }
        }
        context_.script = item.script;
        item.font = fonts_.choose(grapheme, context_);
        item.emoji = fonts_.isEmoji(item.font);
        if (item.emoji) item.script = HB_SCRIPT_COMMON;
        context_.previous = item.emoji ? std::nullopt : std::optional(item.font);
        return item;
    }

    std::u32string_view characters_;
    BidiLevels levels_;
    std::vector<hb_script_t> scripts_;
    FontChooser& fonts_;
    FontContext context_;
    ItemizedParagraph result_;
};

}  // namespace

ItemizedParagraph itemize(const Paragraph& paragraph, Font::Weight weight, FontChooser& fonts) {
    return Itemizer(paragraph, weight, fonts).run();
}

}  // namespace tavrin::text
