// SPDX-License-Identifier: MIT
#include "cli/matrix/cell_renderer.h"

#include <string_view>

#include "cli/production.h"

namespace tavrin::cli {

CellRenderer::CellRenderer(const DocumentArguments& arguments, const Matrix& matrix)
    : arguments_(arguments),
      matrix_(matrix),
      texts_(matrix.documents.size()),
      bound_(matrix.documents.size() * matrix.models.size() * matrix.moments.size()) {
    for (const Matrix::Model& model : matrix.models)
        models_.push_back(model.path ? std::optional(Source{displayName(*model.path),
                                                            readInput(*model.path, arguments.widget.budget)})
                                     : std::nullopt);
}

CellRenderer::Text& CellRenderer::text(std::size_t at) {
    Text& text = texts_[at];
    std::call_once(text.once, [&] {
        const std::string& path = matrix_.documents[at].path;
        text.source.name = displayName(path);
        try {
            text.source.text = readInput(path, arguments_.widget.budget);
            text.prepared.emplace(text.source.text, arguments_.widget.budget);
        } catch (...) {
            text.error = std::current_exception();
        }
    });
    return text;
}

CellRenderer::Bound& CellRenderer::bound(const Cell& cell) {
    const std::size_t at = (cell.document * matrix_.models.size() + cell.model) * matrix_.moments.size() + cell.moment;
    Bound& bound = bound_[at];
    std::call_once(bound.once, [&] { bind(cell, bound); });
    return bound;
}

void CellRenderer::bind(const Cell& cell, Bound& bound) {
    const Text& text = this->text(cell.document);
    const Source* const model = models_[cell.model] ? &*models_[cell.model] : nullptr;
    try {
        if (text.error) std::rethrow_exception(text.error);
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        bound.document = text.prepared->bind(modelText, optionsFor(cell, bound.outcome.notes));
    } catch (...) {
        bound.outcome.failure = describe(std::current_exception(), text.source, model);
    }
}

WidgetOptions CellRenderer::optionsFor(const Cell& cell, std::vector<std::string>& notes) const {
    WidgetOptions options = noting(arguments_.widget, notes);
    options.date = matrix_.moments[cell.moment].date;
    options.room = matrix_.rooms[cell.room];
    options.scale = matrix_.scales[cell.scale];
    options.appearance = matrix_.appearances[cell.appearance];
    return options;
}

CellOutcome CellRenderer::draw(const Cell& cell, const std::function<void(Widget&)>& use) {
    const Bound& source = bound(cell);
    CellOutcome outcome = source.outcome;
    if (outcome.failure) return outcome;
    try {
        Widget widget = source.document->widget(optionsFor(cell, outcome.notes));
        use(widget);
    } catch (...) {
        const Source* const model = models_[cell.model] ? &*models_[cell.model] : nullptr;
        outcome.failure = describe(std::current_exception(), text(cell.document).source, model);
    }
    return outcome;
}

}  // namespace tavrin::cli
