// SPDX-License-Identifier: MIT
#include "cli/preview/checking.h"

#include <optional>
#include <string_view>

#include "tavrin/diagnostics/diagnose.h"

namespace tavrin::cli {

std::string checked(const Drawing& drawing) {
    constexpr std::size_t shown = 200;
    DiagnoseOptions options{drawing.options, drawing.rooms, drawing.appearances, shown};
    if (options.rooms.empty()) options.rooms = {drawing.options.room};
    if (options.appearances.empty()) options.appearances = {drawing.options.appearance};
    const auto model = drawing.model ? std::optional<std::string_view>(*drawing.model) : std::nullopt;
    return toJSON(diagnose(drawing.document, model, options));
}

}  // namespace tavrin::cli
