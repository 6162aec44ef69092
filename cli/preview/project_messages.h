// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/preview/project_folder.h"

namespace tavrin::cli {

/// `{"name", "version", "timeZone", "screens": [{"name", "families": [{"name", "width", "height"}, …]}, …]}`
[[nodiscard]] std::string projectMessage(const ProjectFolder& folder);
/// `{"files": [{"path", "revision", "kind"}, …]}`, where the kind of a file is "document", "model" or "settings". A
/// document also has "model", the path of the one that belongs to it or null, "families", the names of those that it is
/// meant for, and "fault", what is wrong with its settings or null.
[[nodiscard]] std::string filesMessage(const ProjectFolder& folder);
/// `{"text", "revision", "isUtf8"}`
[[nodiscard]] std::string fileMessage(const ProjectText& file);
/// `{"revision"}`
[[nodiscard]] std::string savedMessage(const std::string& revision);
/// `{"paths": […]}`
[[nodiscard]] std::string changedMessage(const std::vector<std::string>& paths);

}  // namespace tavrin::cli
