// SPDX-License-Identifier: MIT
#include "cli/preview/drawing.h"

#include <chrono>
#include <exception>
#include <optional>
#include <string_view>

#include "cli/input.h"
#include "tavrin/widget/kept_pictures.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

Widget widgetOf(const Drawing& drawing, const WidgetOptions& options) {
    const auto model = drawing.model ? std::optional<std::string_view>(*drawing.model) : std::nullopt;
    return Document(drawing.document, options.budget).widget(model, options);
}

void drawInto(Drawn& drawn, const Drawing& drawing) {
    WidgetOptions options = drawing.options;
    options.notes = [&drawn](const WidgetNote& note) {
        drawn.notes.push_back(note.code.empty() ? note.message : note.text());
    };
    KeptPictures& kept = KeptPictures::ofThisThread();
    Widget widget = widgetOf(drawing, options);
    drawn.picture = widget.encode(PictureFormat::png, kept.before(drawing.path, options));
    kept.trim();
    drawn.validUntil = widget.validUntil();
}

void explainInto(Explained& explained, const Drawing& drawing) {
    WidgetOptions options = drawing.options;
    options.trace = WidgetTrace::reasons;
    Widget widget = widgetOf(drawing, options);
    explained.explanation = explanationJSON(widget.explanation());
    explained.layout = widget.layoutText();
}

/// What a piece of work fails with, told in the texts' terms.
template <class Work>
std::optional<Failure> failureOf(const Drawing& drawing, Work work) {
    try {
        work();
        return std::nullopt;
    } catch (...) {
        const Source document{"document", drawing.document};
        const Source model{"model", drawing.model.value_or("")};
        return describe(std::current_exception(), document, drawing.model ? &model : nullptr);
    }
}

}  // namespace

Drawn draw(const Drawing& drawing) {
    const auto begin = std::chrono::steady_clock::now();
    Drawn drawn;
    drawn.failure = failureOf(drawing, [&] { drawInto(drawn, drawing); });
    drawn.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    return drawn;
}

Explained explain(const Drawing& drawing) {
    Explained explained;
    explained.failure = failureOf(drawing, [&] { explainInto(explained, drawing); });
    return explained;
}

}  // namespace tavrin::cli
