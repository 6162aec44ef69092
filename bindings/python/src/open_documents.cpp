// SPDX-License-Identifier: MIT
#include "bindings/python/src/open_documents.h"

#include <utility>

namespace tavrin::python {

OpenDocuments& OpenDocuments::shared() {
    // A thread may still draw while the process ends.
    static OpenDocuments& documents = *new OpenDocuments;
    return documents;
}

OpenDocument OpenDocuments::find(std::string_view text, const RenderBudget& budget) {
    std::optional<Outcome> outcome = findKept({text, budget});
    if (!outcome) {
        // Two threads may both decode it; neither waits for the other.
        try {
            outcome = OpenDocument(std::string(text), budget);
        } catch (const CallError& error) {
            outcome = error.description;
        }
        // What was given up for want of time may come out otherwise next time.
        if (!budget.seconds || outcome->index() == 0) keep({text, budget}, *outcome);
    }
    if (auto* const error = std::get_if<ErrorDescription>(&*outcome)) throw CallError(std::move(*error));
    return std::get<OpenDocument>(*std::move(outcome));
}

std::optional<OpenDocuments::Outcome> OpenDocuments::findKept(const Lookup& key) {
    const std::lock_guard lock(mutex_);
    const Outcome* const known = kept_.find(key);
    return known ? std::optional(*known) : std::nullopt;
}

void OpenDocuments::keep(const Lookup& key, const Outcome& outcome) {
    Cache::Dropped dropped;  // destroyed when the lock is gone
    const std::lock_guard lock(mutex_);
    dropped = kept_.insert({std::string(key.text), key.budget}, outcome, key.text.size());
}

}  // namespace tavrin::python
