// SPDX-License-Identifier: MIT
#include "bindings/python/src/open_documents.h"

#include <algorithm>
#include <utility>

namespace tavrin::python {

OpenDocuments& OpenDocuments::shared() {
    static OpenDocuments documents;
    return documents;
}

OpenDocument OpenDocuments::find(std::string_view text, const RenderBudget& budget) {
    std::optional<Outcome> outcome = findKept(text, budget);
    if (!outcome) {
        // Two threads may both decode it; neither waits for the other.
        try {
            outcome = OpenDocument(std::string(text), budget);
        } catch (const CallError& error) {
            outcome = error.description;
        }
        // What was given up for want of time may come out otherwise next time.
        if (!budget.seconds || outcome->index() == 0) keep({std::string(text), budget, *outcome});
    }
    if (auto* const error = std::get_if<ErrorDescription>(&*outcome)) throw CallError(std::move(*error));
    return std::get<OpenDocument>(*std::move(outcome));
}

bool OpenDocuments::Kept::isOf(std::string_view otherText, const RenderBudget& other) const {
    return budget.steps == other.steps && budget.pixels == other.pixels && budget.bytes == other.bytes &&
           budget.seconds == other.seconds && text == otherText;
}

std::optional<OpenDocuments::Outcome> OpenDocuments::findKept(std::string_view text, const RenderBudget& budget) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find_if(kept_, [&](const Kept& kept) { return kept.isOf(text, budget); });
    if (found == kept_.end()) return std::nullopt;
    kept_.splice(kept_.begin(), kept_, found);
    return found->outcome;
}

void OpenDocuments::keep(Kept document) {
    const std::lock_guard lock(mutex_);
    std::erase_if(kept_, [&](const Kept& kept) { return kept.isOf(document.text, document.budget); });
    kept_.push_front(std::move(document));
    std::size_t count = 0;
    std::size_t bytes = 0;
    const auto isTooMuch = [&](const Kept& kept) {
        bytes += kept.text.size();
        return ++count > maximumCount || bytes > maximumBytes;
    };
    kept_.erase(std::ranges::find_if(kept_, isTooMuch), kept_.end());
}

}  // namespace tavrin::python
