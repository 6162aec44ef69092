// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/block_contents.h"

#include "tavrin/platform/text/shaped_text.h"

namespace tavrin::text {
namespace {

bool takesColor(const ShapedText& text) {
    for (const Run& run : text.runs)
        for (std::uint32_t unit = run.unitBegin; unit < run.unitEnd && !run.emoji; ++unit)
            if (!text.units[unit].white) return true;
    return false;
}

}  // namespace

BlockContents contentsOf(const TextBlock& block) {
    if (!block.lines() || !block.lines()->text) return {};
    const ShapedText& text = *block.lines()->text;
    return {text.utf8, text.size, takesColor(text)};
}

}  // namespace tavrin::text
