// SPDX-License-Identifier: MIT
#include "cli/matrix/matrix_documents.h"

namespace tavrin::cli {

const Document& MatrixDocuments::prepared(std::size_t at) {
    const Text& text = this->text(at);
    if (text.error) std::rethrow_exception(text.error);
    return *text.prepared;
}

const MatrixDocuments::Text& MatrixDocuments::text(std::size_t at) {
    Text& text = texts_[at];
    std::call_once(text.once, [&] {
        const std::string& path = matrix_.documents[at].path;
        text.source.name = displayName(path);
        text.error = arguments_.documents[at].fault;
        if (text.error) return;
        try {
            text.source.text = readInput(path, arguments_.budget);
            text.prepared.emplace(text.source.text, arguments_.budget);
        } catch (...) {
            text.error = std::current_exception();
        }
    });
    return text;
}

}  // namespace tavrin::cli
