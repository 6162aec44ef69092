// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <vector>

#include "cli/command_line.h"
#include "cli/matrix/matrix.h"

namespace tavrin::cli {

/// More pictures than this are refused before anything is drawn.
inline constexpr std::size_t maximumCells = 10'000;

/// Whether an option is given that asks for several pictures of a document.
[[nodiscard]] bool asksForMatrix(const Command& command);

/// The file of `--models` whose lines are models, or "-"; null where they are the files of a folder, or none.
[[nodiscard]] const std::string* findModelLines(const Command& command);

/// The matrix that a command's plural options span; where one is left out, its singular form or the default holds.
/// Of models that are lines it has none.
/// `now` is the moment where none is given; documents are named as `namedDocuments` does. Throws `UsageError`, and
/// `IOError` for a folder that cannot be read.
[[nodiscard]] Matrix readMatrix(const Command& command, Size screen, Date now,
                                const std::vector<std::filesystem::path>& tops = {});

}  // namespace tavrin::cli
