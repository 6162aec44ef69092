// SPDX-License-Identifier: MIT
#include "cli/matrix/cell_renderer.h"

#include <exception>
#include <iterator>
#include <string_view>
#include <tuple>

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
    : arguments_(arguments), matrix_(matrix), models_(arguments), documents_(arguments, matrix) {
    for (const Cell& cell : matrix.cells)
        for (const WidgetTrace trace : {WidgetTrace::none, WidgetTrace::origins})
            bound_[{cell.document, cell.model, cell.moment, trace}];
    for (const Matrix::Model& model : matrix.models) models_.add(model.path);
}

WidgetOptions CellRenderer::tracedOptions(const Cell& cell, WidgetTrace trace, std::vector<std::string>& notes) {
    WidgetOptions options = optionsFor(arguments_, matrix_, cell, notes);
    options.trace = trace;
    return options;
}

CellRenderer::Bound& CellRenderer::bound(const Cell& cell, WidgetTrace trace) {
    Bound& bound = bound_.find({cell.document, cell.model, cell.moment, trace})->second;
    std::call_once(bound.once, [&] { bind(cell, trace, bound); });
    return bound;
}

void CellRenderer::bind(const Cell& cell, WidgetTrace trace, Bound& bound) {
    const Source*& model = bound.model;
    const Document* document = nullptr;
    try {
        model = models_.find(matrix_.models[cell.model].path);
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        const WidgetOptions options = tracedOptions(cell, trace, bound.outcome.notes);
        if (!model) noteMissingModel(documents_.source(cell.document), bound.outcome.notes);
        document = &documents_.prepared(cell.document);
        bound.document = document->bind(modelText, options);
    } catch (...) {
        bound.outcome.failure = describe(std::current_exception(), documents_.source(cell.document), model);
        if (document) nameModel(*bound.outcome.failure, cell, model);
    }
}

void CellRenderer::nameModel(Failure& failure, const Cell& cell, const Source* model) const {
    if (!model || failure.role != TextRole::document) return;
    const auto first = bound_.lower_bound({cell.document, 0, 0, WidgetTrace::none});
    const auto behind = bound_.lower_bound({cell.document + 1, 0, 0, WidgetTrace::none});
    const bool hasSeveral = std::get<1>(first->first) != std::get<1>(std::prev(behind)->first);
    if (hasSeveral) failure.message += ", with the model " + model->name;
}

CellOutcome CellRenderer::draw(const Cell& cell, const std::function<void(Widget&)>& use, WidgetTrace trace) {
    const Bound& source = bound(cell, trace);
    CellOutcome outcome = source.outcome;
    if (outcome.failure) return outcome;
    try {
        Widget widget = source.document->widget(tracedOptions(cell, trace, outcome.notes));
        use(widget);
    } catch (...) {
        outcome.failure = describe(std::current_exception(), documents_.source(cell.document), source.model);
        nameModel(*outcome.failure, cell, source.model);
    }
    return outcome;
}

}  // namespace tavrin::cli
