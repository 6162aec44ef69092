// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/preview/project_folder.h"

namespace tavrin::cli {

/// `{"name", "version", "timeZone", "screens": [{"name", "families": [{"name", "width", "height"}, …]}, …]}`
[[nodiscard]] std::string projectMessage(const ProjectFolder& folder);
/// `{"files": [{"path", "revision", "kind", "model"}, …]}`, where the kind of a file is "document" or "model", and the
/// model is the path of the one that belongs to a document, or null.
[[nodiscard]] std::string filesMessage(const ProjectFolder& folder);
/// `{"text", "revision", "isUtf8"}`
[[nodiscard]] std::string fileMessage(const ProjectText& file);
/// `{"revision"}`
[[nodiscard]] std::string savedMessage(const std::string& revision);
/// `{"paths": […]}`
[[nodiscard]] std::string changedMessage(const std::vector<std::string>& paths);

}  // namespace tavrin::cli
