// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/project/widget_files.h"
#include "cli/project/widget_settings.h"
#include "tavrin/platform/foundation/geometry.h"

namespace tavrin::cli {

/// A command as it holds for one document: where it says nothing, what lies beside the document does.
struct PairedCommand {
    Command command;
    /// The screens of settings that name several; the command has the first.
    std::vector<std::string> screens = {};
    /// The models of the widget's folder, besides the command's own, for verbs that look at all of them.
    std::vector<std::string> furtherModels = {};
    /// The models of families that have another than the rest.
    std::map<std::string, std::string> modelsByFamily = {};

    /// The screens whose widget sizes hold, at least one. Throws `OptionError`.
    [[nodiscard]] std::vector<Size> screenSizes() const;
};

/// Pairs a command with what lies beside a document. Options of the command win, each over its setting. `drawsSeveral`:
/// whether all families and models are asked for, and not only the first.
[[nodiscard]] PairedCommand paired(const Command& command, const WidgetFiles& files, const WidgetSettings& settings,
                                   bool drawsSeveral);

/// The settings beside a document; those that say nothing where there are none. Throws `SettingsError` and `IOError`.
[[nodiscard]] WidgetSettings settingsOf(const WidgetFiles& files);

}  // namespace tavrin::cli
