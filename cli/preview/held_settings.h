// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/preview/project_folder.h"
#include "cli/project/widget_settings.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {

/// Writes settings as the page holds them: `{"families", "screens", "date", "timeZone", "appearance", "background"}`,
/// where the date is in seconds since 1970, and what they do not say is null or an empty list.
void writeSettings(JSONWriter& writer, const WidgetSettings& settings);

/// Writes what belongs to a document as every verb pairs them, as members of an object: "model", the path of its model
/// or null; "settings"; "models", the paths of families' own models by the families' names; "fault", what is wrong with
/// the settings or null.
void writePairs(JSONWriter& writer, const ProjectFolder& folder, const std::string& document);

}  // namespace tavrin::cli
