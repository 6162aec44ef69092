// SPDX-License-Identifier: MIT
#include "cli/edit_history.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace tavrin::cli {
namespace {

std::size_t beginOf(const TextEdit& edit) { return edit.range.begin.offset; }
std::size_t lengthOf(const TextEdit& edit) { return edit.range.end.offset - beginOf(edit); }

/// Where what lies at `offset` behind edits was before them.
std::size_t offsetBefore(std::size_t offset, const std::vector<TextEdit>& edits) {
    std::size_t added = 0;
    std::size_t removed = 0;
    for (const TextEdit& edit : edits) {
        const std::size_t begin = beginOf(edit) + added - removed;
        if (offset < begin) break;
        if (offset < begin + edit.text.size()) return beginOf(edit);
        added += edit.text.size();
        removed += lengthOf(edit);
    }
    return offset + removed - added;
}

}  // namespace

void EditHistory::add(const std::vector<Diagnostic>& fixes) {
    std::vector<TextEdit> edits;
    for (const Diagnostic& fix : fixes) edits.insert(edits.end(), fix.fix.begin(), fix.fix.end());
    std::ranges::stable_sort(edits, {}, beginOf);
    edits.erase(std::unique(edits.begin(), edits.end()), edits.end());
    rounds_.push_back(std::move(edits));
}

Diagnostic EditHistory::inOriginal(Diagnostic diagnostic, std::string_view original) const {
    const auto move = [&](TextRange& range) {
        for (TextPlace* place : {&range.begin, &range.end}) *place = placeAt(original, originalOffset(place->offset));
    };
    if (rounds_.empty()) return diagnostic;
    if (diagnostic.range) move(*diagnostic.range);
    for (TextEdit& edit : diagnostic.fix) move(edit.range);
    return diagnostic;
}

std::size_t EditHistory::originalOffset(std::size_t offset) const {
    for (const std::vector<TextEdit>& edits : std::views::reverse(rounds_)) offset = offsetBefore(offset, edits);
    return offset;
}

}  // namespace tavrin::cli
