// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>

#include "cli/arguments.h"
#include "cli/input.h"
#include "cli/matrix/matrix.h"
#include "tavrin/widget/document.h"

namespace tavrin::cli {

/// The documents of a matrix, each read and decoded once, by whichever thread first asks for it.
class MatrixDocuments {
public:
    /// Keeps references to both.
    MatrixDocuments(const DocumentArguments& arguments, const Matrix& matrix)
        : arguments_(arguments), matrix_(matrix), texts_(matrix.documents.size()) {}

    /// Throws what reading or decoding it threw, each time.
    [[nodiscard]] const Document& prepared(std::size_t at);
    /// Its text, as far as it could be read.
    [[nodiscard]] const Source& source(std::size_t at) { return text(at).source; }

private:
    struct Text {
        std::once_flag once;
        Source source;
        std::optional<Document> prepared;
        std::exception_ptr error;
    };

    const Text& text(std::size_t at);

    const DocumentArguments& arguments_;
    const Matrix& matrix_;
    std::deque<Text> texts_;
};

}  // namespace tavrin::cli
