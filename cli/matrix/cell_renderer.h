// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/input.h"
#include "cli/matrix/matrix.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {

/// What came of one cell beside its picture.
struct CellOutcome {
    /// What was doubtful, a line each; also what was heard while the document was loaded.
    std::vector<std::string> notes = {};
    std::optional<Failure> failure = std::nullopt;
};

/// Makes widgets for the cells of a matrix, on any number of threads. A document is read and decoded once, and bound
/// once for each model and moment; each cell is laid out for itself, since size, scale and appearance all count there.
class CellRenderer {
public:
    /// Reads all models. Throws `IOError` for one that cannot be read. Keeps references to both.
    CellRenderer(const DocumentArguments& arguments, const Matrix& matrix);

    /// Loads what a cell needs and hands its widget to `use`; what goes wrong, there too, becomes the failure.
    [[nodiscard]] CellOutcome draw(const Cell& cell, const std::function<void(Widget&)>& use);

private:
    struct Text {
        std::once_flag once;
        Source source;
        std::optional<Document> prepared;
        std::exception_ptr error;
    };
    struct Bound {
        std::once_flag once;
        std::optional<BoundDocument> document;
        CellOutcome outcome;
    };

    Text& text(std::size_t at);
    Bound& bound(const Cell& cell);
    void bind(const Cell& cell, Bound& bound);
    [[nodiscard]] WidgetOptions optionsFor(const Cell& cell, std::vector<std::string>& notes) const;

    const DocumentArguments& arguments_;
    const Matrix& matrix_;
    std::vector<std::optional<Source>> models_;
    std::deque<Text> texts_;
    std::deque<Bound> bound_;
};

}  // namespace tavrin::cli
