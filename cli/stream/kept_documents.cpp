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

std::shared_ptr<const ReadDocument> KeptDocuments::find(const std::string& path) {
    return kept_.find(path, [&] {
        auto document = std::make_shared<const ReadDocument>(Source{path, readInput(path, budget_)}, budget_);
        const std::size_t bytes = document->source().text.size();
        return std::pair(std::move(document), bytes);
    });
}

}  // namespace tavrin::cli
