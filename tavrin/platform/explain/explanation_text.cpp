// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>

#include "tavrin/platform/explain/explanation.h"
#include "tavrin/platform/explain/words.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

using explain::inWords;

constexpr std::size_t deepestIndent = 40;
constexpr std::size_t widestTitle = 56;

std::string frameInWords(const ViewExplanation& view) {
    return view.frame ? inWords(view.frame->size) + " at " + inWords(view.frame->origin) : "–";
}

std::string indented(const ViewExplanation& view) {
    return std::string(std::min(2 * view.depth, deepestIndent), ' ') + view.title;
}

void pad(std::string& line, std::size_t columns) {
    const std::size_t used = countCodePoints(line);
    line.append(used < columns ? columns - used : 1, ' ');
}

/// How wide a column must be for most of its entries.
template <class TextOf>
std::size_t columnWidth(const Explanation& explanation, std::size_t widest, TextOf textOf) {
    std::size_t columns = 0;
    for (const ViewExplanation& view : explanation) columns = std::max(columns, countCodePoints(textOf(view)));
    return std::min(columns, widest) + 2;
}

}  // namespace

std::string outlineText(const Explanation& explanation) {
    const std::size_t titles = columnWidth(explanation, widestTitle, indented);
    const std::size_t frames = columnWidth(explanation, widestTitle, frameInWords);
    std::string text;
    for (const ViewExplanation& view : explanation) {
        std::string line = indented(view);
        pad(line, titles);
        line += frameInWords(view);
        if (!view.summary.empty()) {
            pad(line, titles + frames);
            line += view.summary;
        }
        if (view.origin) line += "  (" + toText(*view.origin) + ")";
        text += line + "\n";
    }
    return text;
}

std::string explanationText(const Explanation& explanation, std::span<const std::size_t> chosen) {
    std::string text;
    for (const std::size_t at : chosen) {
        const ViewExplanation& view = explanation[at];
        if (!text.empty()) text += "\n";
        text += view.title + (view.origin ? " from " + toText(*view.origin) : "") + "\n";
        if (!view.frame) {
            text += "  It is " + view.summary + ".\n";
            continue;
        }
        for (const std::string* sentence : {&view.whyProposed, &view.whyAnswered, &view.whyPlaced})
            text += "  " + *sentence + "\n";
    }
    return text;
}

}  // namespace tavrin
