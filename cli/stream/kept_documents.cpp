// SPDX-License-Identifier: MIT
#include "cli/stream/kept_documents.h"

#include <algorithm>
#include <utility>

namespace tavrin::cli {

ReadDocument::ReadDocument(Source source, const RenderBudget& budget) : source_(std::move(source)) {
    try {
        document_.emplace(source_.text, budget);
    } catch (...) {
        error_ = std::current_exception();
    }
}

const Document& ReadDocument::decoded() const {
    if (!document_) std::rethrow_exception(error_);
    return *document_;
}

std::optional<KeptDocuments::Stamp> KeptDocuments::stampOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;  // a pipe is read anew
    return Stamp{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

std::shared_ptr<const ReadDocument> KeptDocuments::find(const std::string& path) {
    // Before the file is read: one that is changed meanwhile is read again next time.
    const std::optional<Stamp> stamp = stampOf(path);
    if (stamp)
        if (auto kept = findKept(path, *stamp)) return kept;
    // Two threads may both read it; neither waits for the other.
    auto document = std::make_shared<const ReadDocument>(Source{path, readInput(path, budget_)}, budget_);
    if (stamp) keep({path, *stamp, document});
    return document;
}

std::shared_ptr<const ReadDocument> KeptDocuments::findKept(const std::string& path, const Stamp& stamp) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find(kept_, path, &Kept::path);
    if (found == kept_.end() || found->stamp != stamp) return nullptr;
    kept_.splice(kept_.begin(), kept_, found);
    return found->document;
}

void KeptDocuments::keep(Kept document) {
    const std::lock_guard lock(mutex_);
    std::erase_if(kept_, [&](const Kept& kept) { return kept.path == document.path; });
    kept_.push_front(std::move(document));
    std::size_t count = 0;
    std::size_t bytes = 0;
    const auto isTooMuch = [&](const Kept& kept) {
        bytes += kept.document->source().text.size();
        return ++count > maximumCount || bytes > maximumBytes;
    };
    kept_.erase(std::ranges::find_if(kept_, isTooMuch), kept_.end());
}

}  // namespace tavrin::cli
