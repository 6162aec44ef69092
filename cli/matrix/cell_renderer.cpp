// SPDX-License-Identifier: MIT
#include "cli/matrix/cell_renderer.h"

#include <exception>
#include <utility>

#include "cli/note_logger.h"
#include "cli/production.h"

namespace tavrin::cli {
namespace {

/// Where this thread's notes go. Views keep the logger they were loaded with, but what they tell it while one cell is
/// laid out is that cell's.
thread_local std::vector<std::string>* threadNotes = nullptr;

/// Passes what is logged on to the notes of the calling thread.
class ThreadLogger final : public Logger {
public:
    void error(std::string_view code, std::string_view message) override {
        if (threadNotes) NoteLogger(*threadNotes).error(code, message);
    }
    void info(std::string_view) override {}
    void debug(std::string_view) override {}
    void metric(std::string_view) override {}
    void usertrack(std::string_view, std::string_view, std::string_view) override {}
};

/// Lets the calling thread note into a list for a while.
class Noting {
public:
    explicit Noting(std::vector<std::string>& notes) : before_(std::exchange(threadNotes, &notes)) {}
    Noting(const Noting&) = delete;
    Noting& operator=(const Noting&) = delete;
    ~Noting() { threadNotes = before_; }

private:
    std::vector<std::string>* before_;
};

}  // namespace

CellRenderer::CellRenderer(const Arguments& arguments, const Matrix& matrix)
    : arguments_(arguments),
      matrix_(matrix),
      documents_(matrix.documents.size()),
      loaded_(matrix.documents.size() * matrix.models.size() * matrix.moments.size()) {
    for (const Matrix::Model& model : matrix.models)
        models_.push_back(model.path ? std::optional(Source{displayName(*model.path), readInput(*model.path)})
                                     : std::nullopt);
}

CellRenderer::Text& CellRenderer::document(std::size_t at) {
    Text& text = documents_[at];
    std::call_once(text.once, [&] {
        const std::string& path = matrix_.documents[at].path;
        text.source.name = displayName(path);
        try {
            text.source.text = readInput(path);
        } catch (...) {
            text.error = std::current_exception();
        }
    });
    return text;
}

CellRenderer::Loaded& CellRenderer::loaded(const Cell& cell) {
    const std::size_t at = (cell.document * matrix_.models.size() + cell.model) * matrix_.moments.size() + cell.moment;
    Loaded& loaded = loaded_[at];
    std::call_once(loaded.once, [&] { load(cell, loaded); });
    return loaded;
}

void CellRenderer::load(const Cell& cell, Loaded& loaded) {
    const Text& text = document(cell.document);
    const Source* const model = models_[cell.model] ? &*models_[cell.model] : nullptr;
    try {
        if (text.error) std::rethrow_exception(text.error);
        const Noting noting(loaded.outcome.notes);
        Context context(std::make_shared<ThreadLogger>());
        setUp(context, arguments_);
        context.date = matrix_.moments[cell.moment].date;
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        loaded.view = TavrinEngine().loadView(text.source.text, modelText, context);
        loaded.widgetURL = context.widgetURL();
    } catch (...) {
        loaded.outcome.failure = describe(std::current_exception(), text.source, model);
    }
}

RenderOptions CellRenderer::optionsFor(const Cell& cell, const Loaded& loaded, std::vector<std::string>& notes) const {
    RenderOptions options = arguments_.options;
    options.setRoom(matrix_.rooms[cell.room]);
    options.scale = matrix_.scales[cell.scale];
    options.environment.appearance = matrix_.appearances[cell.appearance];
    options.environment.date = matrix_.moments[cell.moment].date;
    options.widgetURL = loaded.widgetURL;
    options.diagnostics = [&notes](std::string_view message) { notes.push_back("warning: " + std::string(message)); };
    return options;
}

CellOutcome CellRenderer::draw(const Cell& cell, const std::function<void(ImageRenderer&)>& use) {
    const Loaded& source = loaded(cell);
    CellOutcome outcome = source.outcome;
    if (outcome.failure) return outcome;
    try {
        const Noting noting(outcome.notes);
        ImageRenderer renderer(source.view, optionsFor(cell, source, outcome.notes));
        use(renderer);
    } catch (...) {
        const Source* const model = models_[cell.model] ? &*models_[cell.model] : nullptr;
        outcome.failure = describe(std::current_exception(), document(cell.document).source, model);
    }
    return outcome;
}

}  // namespace tavrin::cli
