// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "cli/failure.h"
#include "cli/matrix/matrix_documents.h"
#include "cli/read_models.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {

/// What came of one cell beside its picture.
struct CellOutcome {
    /// What was doubtful, a line each; also what was heard while the document was loaded.
    std::vector<std::string> notes = {};
    std::optional<Failure> failure = std::nullopt;
};

/// How a cell is drawn; what is doubtful becomes lines of `notes`, which must live as long as what is made with it.
[[nodiscard]] WidgetOptions optionsFor(const DocumentArguments& arguments, const Matrix& matrix, const Cell& cell,
                                       std::vector<std::string>& notes);

/// Makes widgets for the cells of a matrix, on any number of threads. A document is read and decoded once, and bound
/// once for each model and moment; each cell is laid out for itself, since size, scale and appearance all count there.
class CellRenderer {
public:
    /// Reads all models. Throws `IOError` for one that cannot be read, where that ends the run. Keeps references to
    /// both.
    CellRenderer(const DocumentArguments& arguments, const Matrix& matrix);

    /// Loads what a cell needs and hands its widget to `use`; what goes wrong, there too, becomes the failure. That of
    /// a document with several models names the model. What is traced is bound for itself.
    [[nodiscard]] CellOutcome draw(const Cell& cell, const std::function<void(Widget&)>& use,
                                   WidgetTrace trace = WidgetTrace::none);

    /// The text of one of the documents, as far as it could be read.
    [[nodiscard]] const Source& source(std::size_t document) { return documents_.source(document); }

private:
    /// A document, model and moment, by their places, and what is traced.
    using Key = std::tuple<std::size_t, std::size_t, std::size_t, WidgetTrace>;

    struct Bound {
        std::once_flag once;
        const Source* model = nullptr;
        std::optional<BoundDocument> document;
        CellOutcome outcome;
    };

    Bound& bound(const Cell& cell, WidgetTrace trace);
    void bind(const Cell& cell, WidgetTrace trace, Bound& bound);
    /// Adds the model to what is wrong in a document with it, where the document has several.
    void nameModel(Failure& failure, const Cell& cell, const Source* model) const;
    [[nodiscard]] WidgetOptions tracedOptions(const Cell& cell, WidgetTrace trace, std::vector<std::string>& notes);

    const DocumentArguments& arguments_;
    const Matrix& matrix_;
    ReadModels models_;
    MatrixDocuments documents_;
    std::map<Key, Bound> bound_;  // whose keys are there from the beginning
};

}  // namespace tavrin::cli
