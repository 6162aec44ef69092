// SPDX-License-Identifier: MIT
#include "cli/matrix/cell_renderer.h"

#include <exception>
#include <string_view>

#include "cli/production.h"

namespace tavrin::cli {

WidgetOptions optionsFor(const DocumentArguments& arguments, const Matrix& matrix, const Cell& cell,
                         std::vector<std::string>& notes) {
    WidgetOptions options = noting(arguments.documents[cell.document].widget, notes);
    options.date = matrix.moments[cell.moment].date;
    options.room = matrix.rooms[cell.room];
    options.scale = matrix.scales[cell.scale];
    options.appearance = matrix.appearances[cell.appearance];
    return options;
}

CellRenderer::CellRenderer(const DocumentArguments& arguments, const Matrix& matrix)
    : arguments_(arguments), matrix_(matrix), documents_(arguments, matrix) {
    for (const Cell& cell : matrix.cells) bound_[{cell.document, cell.model, cell.moment}];
    for (const Matrix::Model& model : matrix.models)
        models_.push_back(
            model.path ? std::optional(Source{displayName(*model.path), readInput(*model.path, arguments.budget)})
                       : std::nullopt);
}

CellRenderer::Bound& CellRenderer::bound(const Cell& cell) {
    Bound& bound = bound_.find({cell.document, cell.model, cell.moment})->second;
    std::call_once(bound.once, [&] { bind(cell, bound); });
    return bound;
}

void CellRenderer::bind(const Cell& cell, Bound& bound) {
    const Source* const model = models_[cell.model] ? &*models_[cell.model] : nullptr;
    try {
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        const WidgetOptions options = optionsFor(arguments_, matrix_, cell, bound.outcome.notes);
        if (!model) noteMissingModel(documents_.source(cell.document), bound.outcome.notes);
        bound.document = documents_.prepared(cell.document).bind(modelText, options);
    } catch (...) {
        bound.outcome.failure = describe(std::current_exception(), documents_.source(cell.document), model);
    }
}

CellOutcome CellRenderer::draw(const Cell& cell, const std::function<void(Widget&)>& use) {
    const Bound& source = bound(cell);
    CellOutcome outcome = source.outcome;
    if (outcome.failure) return outcome;
    try {
        Widget widget = source.document->widget(optionsFor(arguments_, matrix_, cell, outcome.notes));
        use(widget);
    } catch (...) {
        const Source* const model = models_[cell.model] ? &*models_[cell.model] : nullptr;
        outcome.failure = describe(std::current_exception(), documents_.source(cell.document), model);
    }
    return outcome;
}

}  // namespace tavrin::cli
