// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/shaped_text.h"

#include <algorithm>

namespace tavrin::text {
namespace {

/// Longer results are not worth their memory.
constexpr std::size_t mostLinesRemembered = 256;

}  // namespace

std::size_t ShapedText::bytes() const {
    return sizeof(ShapedText) + utf8.capacity() + paragraphs.capacity() * sizeof(ShapedParagraph) +
           runs.capacity() * sizeof(Run) + units.capacity() * sizeof(Unit) + glyphs.capacity() * sizeof(Glyph);
}

std::size_t ShapedText::memoryBytes() const {
    const std::size_t lines = std::min(units.size() + paragraphs.size(), mostLinesRemembered);
    return memory_.size() * (sizeof(BrokenText) + lines * sizeof(Line));
}

std::shared_ptr<const BrokenText> ShapedText::recall(const TextRoom& room) const {
    for (const auto& memory : memory_)
        if (memory.broken && memory.room == room) return memory.broken;
    return nullptr;
}

void ShapedText::remember(const TextRoom& room, std::shared_ptr<const BrokenText> broken) const {
    if (broken->lines.size() > mostLinesRemembered) return;
    memory_[nextMemory_] = {room, std::move(broken)};
    nextMemory_ = (nextMemory_ + 1) % memory_.size();
}

}  // namespace tavrin::text
