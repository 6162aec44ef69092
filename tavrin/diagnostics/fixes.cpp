// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/fixes.h"

#include <algorithm>
#include <map>
#include <utility>

namespace tavrin {
namespace {

/// Edits that don't touch each other, by where they begin.
class EditSet {
public:
    /// Whether an edit may be made beside those that are there; the same one may.
    [[nodiscard]] bool accepts(const TextEdit& edit) const {
        const std::size_t begin = edit.range.begin.offset;
        const auto next = edits_.lower_bound(begin);
        if (next != edits_.end() && *next->second == edit) return true;
        if (next != edits_.end() && next->first < std::max(edit.range.end.offset, begin + 1)) return false;
        return next == edits_.begin() || std::prev(next)->second->range.end.offset <= begin;
    }
    void insert(const TextEdit& edit) { edits_.emplace(edit.range.begin.offset, &edit); }

    [[nodiscard]] std::string applied(std::string_view text) const {
        std::string result;
        std::size_t at = 0;
        for (const auto& [begin, edit] : edits_) {
            result.append(text.substr(at, begin - at)).append(edit->text);
            at = edit->range.end.offset;
        }
        return result.append(text.substr(at));
    }

private:
    std::map<std::size_t, const TextEdit*> edits_;
};

}  // namespace

FixedText applyFixes(std::string_view document, const std::vector<Diagnostic>& diagnostics) {
    EditSet edits;
    FixedText result;
    for (std::size_t i = 0; i < diagnostics.size(); ++i) {
        const Diagnostic& diagnostic = diagnostics[i];
        if (diagnostic.fix.empty() || diagnostic.role != TextRole::document) continue;
        const bool fits = std::ranges::all_of(diagnostic.fix, [&](const TextEdit& edit) {
            const auto [begin, end] = std::pair(edit.range.begin.offset, edit.range.end.offset);
            return begin <= end && end <= document.size() && edits.accepts(edit);
        });
        if (!fits) continue;
        for (const TextEdit& edit : diagnostic.fix) edits.insert(edit);
        result.fixed.push_back(i);
    }
    result.text = edits.applied(document);
    return result;
}

}  // namespace tavrin
