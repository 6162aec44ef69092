// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "cli/command_line.h"
#include "cli/options.h"
#include "tavrin/diagnostics/diagnose.h"

namespace tavrin::cli {

/// What only `tavrin check` is told.
struct CheckOptions {
    CheckFormat format = CheckFormat::text;
    /// Whether fixes are made in the documents.
    bool fixes = false;
    /// Whether a warning makes the run fail.
    bool isStrict = false;
    bool showsNotes = false;
    std::vector<WidgetRoom> rooms = {};
    std::vector<Appearance> appearances = {};
};

/// Judges the values that only `tavrin check` takes. Throws `UsageError`.
[[nodiscard]] CheckOptions readCheckOptions(const Command& command, Size screen);

}  // namespace tavrin::cli
