// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "cli/new/widget_template.h"

namespace tavrin::cli {

/// A file that is not there yet, and what it is to hold.
struct NewFile {
    std::filesystem::path path;
    std::string_view text;
};

/// The path of a new widget without an ending: "widgets/habits", also where it is given as "widgets/habits.json".
/// Throws `UsageError` for what is no widget's name.
[[nodiscard]] std::string stemOfNew(const std::string& name);

/// The document, the model and the settings that a template begins a widget with.
[[nodiscard]] std::vector<NewFile> filesOfNew(const std::string& stem, const WidgetTemplate& begun);

/// Writes new files, all or none of them, and makes the folders that they stand in. Throws `FileExists` where one is
/// there already, and `IOError`.
void createFiles(const std::vector<NewFile>& files);

}  // namespace tavrin::cli
