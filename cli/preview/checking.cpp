// SPDX-License-Identifier: MIT
#include "cli/preview/checking.h"

#include <optional>
#include <string_view>

#include "tavrin/diagnostics/diagnose.h"

namespace tavrin::cli {

std::string checked(const Drawing& drawing) {
    constexpr std::size_t shown = 200;
    const DiagnoseOptions options{drawing.options, {drawing.options.room}, {drawing.options.appearance}, shown};
    const auto model = drawing.model ? std::optional<std::string_view>(*drawing.model) : std::nullopt;
    return toJSON(diagnose(drawing.document, model, options));
}

}  // namespace tavrin::cli
