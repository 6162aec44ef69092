// SPDX-License-Identifier: MIT
#include "cli/stream/kept_documents.h"

#include <utility>

namespace tavrin::cli {

ReadDocument::ReadDocument(Source source, const RenderBudget& budget) : source_(std::move(source)) {
    try {
        document_.emplace(Document(source_.text, budget).withoutTime());
    } catch (...) {
        error_ = std::current_exception();
    }
}

const Document& ReadDocument::decoded() const {
    if (!document_) std::rethrow_exception(error_);
    return *document_;
}

std::optional<FileStamp> KeptDocuments::stampOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;  // a pipe is read anew
    const FileStamp stamp(status);
    return stamp.isSettled() ? std::optional(stamp) : std::nullopt;
}

std::shared_ptr<const ReadDocument> KeptDocuments::find(const std::string& path) {
    // Before the file is read: one that is changed meanwhile is read again next time.
    const std::optional<FileStamp> stamp = stampOf(path);
    if (stamp) {
        const std::lock_guard lock(mutex_);
        const Kept* const kept = kept_.find(path);
        if (kept && kept->stamp == *stamp) return kept->document;
    }
    // Two threads may both read it; neither waits for the other.
    auto document = std::make_shared<const ReadDocument>(Source{path, readInput(path, budget_)}, budget_);
    if (stamp) {
        const std::size_t bytes = document->source().text.size();
        LRUCache<std::string, Kept>::Dropped dropped;  // destroyed when the lock is gone
        const std::lock_guard lock(mutex_);
        dropped = kept_.insert(path, {*stamp, document}, bytes);
    }
    return document;
}

}  // namespace tavrin::cli
