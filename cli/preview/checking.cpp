// SPDX-License-Identifier: MIT
#include "cli/preview/checking.h"

#include <optional>
#include <string_view>

#include "tavrin/diagnostics/diagnose.h"

namespace tavrin::cli {

std::string checked(const Drawing& drawing) {
    DiagnoseOptions options;
    options.rooms = {{drawing.family, drawing.options.size, drawing.options.linksCanBeTapped}};
    options.appearances = {drawing.options.environment.appearance};
    options.scale = drawing.options.scale;
    options.date = drawing.options.environment.date;
    options.timeZone = drawing.options.environment.timeZone;
    options.fetchPolicy = drawing.fetchPolicy;
    options.maximumDiagnostics = 200;
    if (drawing.pictures) options.imageCacheDir = URL::fileURL(*drawing.pictures);
    const auto model = drawing.model ? std::optional<std::string_view>(*drawing.model) : std::nullopt;
    return toJSON(diagnose(drawing.document, model, options));
}

}  // namespace tavrin::cli
