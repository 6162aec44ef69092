// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "cli/command_line.h"
#include "cli/matrix/matrix.h"
#include "cli/project/paired_command.h"

namespace tavrin::cli {

/// More pictures than this are refused before anything is drawn.
inline constexpr std::size_t maximumCells = 10'000;

/// Whether an option is given that asks for several pictures of a document.
[[nodiscard]] bool asksForMatrix(const Command& command);

/// The file of `--models` whose lines are models, or "-"; null where they are the files of a folder, or none.
[[nodiscard]] const std::string* findModelLines(const Command& command);

/// What a document is drawn with by the plural options of its command; where one is left out, its singular form or the
/// default holds. Of models that are lines it has none. `now` is the moment where none is given. Throws `UsageError`,
/// and `IOError` for a folder that cannot be read.
[[nodiscard]] MatrixLooks readLooks(const PairedCommand& paired, Date now);

/// The models that a document is drawn with, each as it is in each of some rooms: see `MatrixLooks`. Throws as
/// `readLooks` does.
[[nodiscard]] std::vector<std::vector<std::optional<Matrix::Model>>> readModels(const PairedCommand& paired,
                                                                                const std::vector<WidgetRoom>& rooms);

/// The matrix of some documents, each drawn as its looks say. Throws `UsageError` for more than `maximumCells`.
[[nodiscard]] Matrix matrixOf(std::vector<Matrix::Document> documents, const std::vector<MatrixLooks>& looks);

}  // namespace tavrin::cli
