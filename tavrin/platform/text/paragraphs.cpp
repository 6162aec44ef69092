// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/paragraphs.h"

#include <algorithm>

#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin::text {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t wordJoiner = 0x2060;

bool isLineBreak(char32_t c) { return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029; }
bool isControl(char32_t c) { return (c < 0x20 && c != '\t') || (c >= 0x7F && c < 0xA0); }

}  // namespace

bool ParagraphReader::next(Paragraph& paragraph) {
    paragraph.characters.clear();
    paragraph.utf8.clear();
    if (atEnd_) return false;
    while (!rest_.empty()) {
        takeAscii(paragraph);
        if (rest_.empty()) break;
        char32_t c = take();
        if (isLineBreak(c)) {
            if (c == '\r' && rest_.starts_with('\n')) rest_.remove_prefix(1);
            return true;
        }
        if (isControl(c)) c = wordJoiner;
        paragraph.characters.push_back(c);
        appendUtf8(paragraph.utf8, c);
    }
    atEnd_ = true;
    return true;
}

void ParagraphReader::takeAscii(Paragraph& paragraph) {
    const auto* end = std::find_if_not(rest_.begin(), rest_.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
    const auto count = static_cast<std::size_t>(end - rest_.begin());
    paragraph.characters.append(rest_.begin(), end);
    paragraph.utf8.append(rest_.substr(0, count));
    rest_.remove_prefix(count);
}

char32_t ParagraphReader::take() {
    const Utf8Step step = decodeUtf8(rest_, 0);
    rest_.remove_prefix(step.length);
    return step.codePoint.value_or(replacement);
}

}  // namespace tavrin::text
