// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/preview/project_folder.h"

namespace tavrin::cli {

/// `{"name", "version", "timeZone", "screens": [{"name", "families": [{"name", "width", "height"}, …]}, …]}`
[[nodiscard]] std::string projectMessage(const ProjectFolder& folder);
/// `{"files": [{"path", "revision", "kind"}, …]}`, where the kind of a file is "document", "model" or "settings". A
/// document also has what belongs to it (`writePairs`).
[[nodiscard]] std::string filesMessage(const ProjectFolder& folder);
/// `{"templates": [{"name", "summary", "document", "model", "settings"}, …]}`: texts, and settings as `writeSettings`
/// has them.
[[nodiscard]] std::string templatesMessage();
/// `{"text", "revision", "isUtf8"}`
[[nodiscard]] std::string fileMessage(const ProjectText& file);
/// `{"revision"}`
[[nodiscard]] std::string savedMessage(const std::string& revision);
/// `{"files": [{"path", "revision"}, …]}`
[[nodiscard]] std::string createdMessage(const std::vector<ProjectFile>& files);
/// `{"paths": […]}`
[[nodiscard]] std::string changedMessage(const std::vector<std::string>& paths);

}  // namespace tavrin::cli
