// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "cli/project/widget_files.h"
#include "cli/project/widget_settings.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::cli {

/// Reads what lies beside a document as options of its drawing, but for those that somebody else has said. Where a size
/// is said, neither a family nor a screen counts. Throws `OptionError`.
void readBeside(OptionReader& reader, const WidgetFiles& files, const WidgetSettings& settings,
                const std::function<bool(OptionName)>& isSaid);

/// The file of the model that a widget has in a family: the family's own or else the one that lies beside it; none
/// where there is none.
[[nodiscard]] std::optional<std::filesystem::path> modelFile(const WidgetFiles& files, const WidgetSettings& settings,
                                                             std::string_view family);

}  // namespace tavrin::cli
