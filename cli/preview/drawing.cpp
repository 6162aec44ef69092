// SPDX-License-Identifier: MIT
#include "cli/preview/drawing.h"

#include <chrono>
#include <exception>
#include <memory>
#include <string_view>
#include <utility>

#include "cli/input.h"
#include "cli/note_logger.h"
#include "tavrin/dsl/view_origins.h"
#include "tavrin/engine/tavrin_engine.h"
#include "tavrin/platform/explain/explanation.h"

namespace tavrin::cli {
namespace {

AnyView load(const Drawing& drawing, Context& context) {
    context.date = drawing.options.environment.date;
    context.timeZone = drawing.options.environment.timeZone;
    context.fetchPolicy = drawing.fetchPolicy;
    if (drawing.pictures) context.imageCacheDir = URL::fileURL(*drawing.pictures);
    const auto model = drawing.model ? std::optional<std::string_view>(*drawing.model) : std::nullopt;
    return TavrinEngine().loadView(drawing.document, model, context);
}

void drawInto(Drawn& drawn, const Drawing& drawing) {
    Context context(std::make_shared<NoteLogger>(drawn.notes));
    const AnyView view = load(drawing, context);
    RenderOptions options = drawing.options;
    options.diagnostics = [&drawn](std::string_view message) { drawn.notes.emplace_back(message); };
    drawn.picture = ImageRenderer(view, std::move(options)).encode(PictureFormat::png);
}

void explainInto(Explained& explained, const Drawing& drawing) {
    Context context;
    context.recordsOrigins = true;
    const AnyView view = load(drawing, context);
    RenderOptions options = drawing.options;
    options.recording = layout::Recording::placements;
    ImageRenderer renderer(view, std::move(options));
    const Explanation explanation =
        explainLayout(renderer.layoutTree(), [&](const AnyView& each) { return context.origins()->find(each); });
    explained.explanation = explanationJSON(explanation);
    explained.layout = renderer.layoutText();
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
