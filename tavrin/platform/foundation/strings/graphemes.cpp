// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/graphemes.h"

#include <algorithm>
#include <string>

#include <pango/pango.h>

#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

constexpr std::size_t firstWindow = 64;  // code points

/// Whether every byte is a character.
bool isPlain(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; }) &&
           text.find("\r\n") == std::string_view::npos;
}

}  // namespace

GraphemeWalk::GraphemeWalk(std::string_view text) : text_(text), isPlain_(isPlain(text)) {}

bool GraphemeWalk::next() {
    begin_ = end_;
    if (begin_ == text_.size()) return false;
    if (isPlain_) {
        ++end_;
        return true;
    }
    if (nextEnd_ == ends_.size()) lookAhead();
    end_ = ends_[nextEnd_++];
    return true;
}

/// Finds the ends of the next characters in a window of code points, which begins where a character does. The last one
/// may reach past the window and is left for the next, unless the text ends; the window grows until it holds one.
void GraphemeWalk::lookAhead() {
    ends_.clear();
    nextEnd_ = 0;
    for (std::size_t window = firstWindow; ends_.empty(); window *= 2) {
        std::string utf8;
        std::vector<std::size_t> begins;
        std::size_t at = begin_;
        while (at < text_.size() && begins.size() < window) {
            const Utf8Step step = decodeUtf8(text_, at);
            begins.push_back(at);
            const char32_t codePoint = step.codePoint.value_or(0xFFFD);
            appendUtf8(utf8, codePoint == 0 ? 1 : codePoint);  // to Pango a 0 is the end; both are controls
            at += step.length;
        }
        std::vector<PangoLogAttr> breaks(begins.size() + 1);
        pango_default_break(utf8.data(), static_cast<int>(utf8.size()), nullptr, breaks.data(),
                            static_cast<int>(breaks.size()));
        for (std::size_t i = 1; i < begins.size(); ++i)
            if (breaks[i].is_cursor_position != 0) ends_.push_back(begins[i]);
        if (at == text_.size()) ends_.push_back(at);
    }
}

}  // namespace tavrin
