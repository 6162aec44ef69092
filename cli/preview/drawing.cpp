#include "cli/preview/drawing.h"

#include <chrono>
#include <exception>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/input.h"
#include "cli/note_logger.h"
#include "cli/preview/project_folder.h"
#include "tavrin/engine/tavrin_engine.h"

namespace tavrin::cli {
namespace {

/// The address itself, or one that leads nowhere for a file outside the folder.
URL confined(const URL& address, const std::filesystem::path& folder) {
    const std::filesystem::path file = address.filePath();
    if (file.empty()) return address;
    std::error_code error;
    const std::filesystem::path real = std::filesystem::weakly_canonical(file, error);
    return !error && standsIn(real, folder) ? address : *URL::parse("about:blank");
}

void setUp(Context& context, const Drawing& drawing) {
    context.date = drawing.options.environment.date;
    context.timeZone = drawing.options.environment.timeZone;
    context.fetchPolicy = drawing.fetchPolicy;
    context.linkConverter = [&folder = drawing.folder](const URL& address) { return confined(address, folder); };
    if (drawing.pictures) context.imageCacheDir = URL::fileURL(*drawing.pictures);
}

void drawInto(Drawn& drawn, const Drawing& drawing) {
    Context context(std::make_shared<NoteLogger>(drawn.notes));
    setUp(context, drawing);
    const auto model = drawing.model ? std::optional<std::string_view>(*drawing.model) : std::nullopt;
    const AnyView view = TavrinEngine().loadView(drawing.document, model, context);
    RenderOptions options = drawing.options;
    options.diagnostics = [&drawn](std::string_view message) { drawn.notes.emplace_back(message); };
    ImageRenderer renderer(view, std::move(options));
    drawn.picture = renderer.encode(PictureFormat::png);
    if (drawing.withLayout) drawn.layout = renderer.layoutText();
}

}  // namespace

Drawn draw(const Drawing& drawing) {
    const auto begin = std::chrono::steady_clock::now();
    Drawn drawn;
    try {
        drawInto(drawn, drawing);
    } catch (...) {
        const Source document{"document", drawing.document};
        const Source model{"model", drawing.model.value_or("")};
        drawn.failure = describe(std::current_exception(), document, drawing.model ? &model : nullptr);
    }
    drawn.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    return drawn;
}

}  // namespace tavrin::cli
