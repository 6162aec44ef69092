// SPDX-License-Identifier: MIT
#pragma once

#include "cli/arguments.h"
#include "cli/reporter.h"

/// The verbs that work on documents. Each returns the exit status: 0, or 1 when a document failed, which it has
/// reported. Each throws `IOError` for what concerns no document alone, and `ClosedOutput`.
namespace tavrin::cli {

/// Draws every document, also when one fails, and writes the pictures.
[[nodiscard]] int render(const Arguments& arguments, const Reporter& reporter);
/// Draws the matrix of the arguments into its folder, also when a picture fails, with an index and a contact sheet.
[[nodiscard]] int renderMatrix(const Arguments& arguments, const Reporter& reporter);
/// Prints the view tree of one document or, as the verb says, the laid-out tree or the tap targets.
[[nodiscard]] int print(const Arguments& arguments, const Reporter& reporter);
/// Reports what is wrong with each document.
[[nodiscard]] int check(const Arguments& arguments, const Reporter& reporter);
/// Compares what is drawn with the snapshots that are kept; records new ones and says what differs.
[[nodiscard]] int snapshot(const Arguments& arguments, const Reporter& reporter);
/// Downloads the pictures that the documents name into the folder for them.
[[nodiscard]] int fetch(const Arguments& arguments, const Reporter& reporter);

/// Serves the preview of a folder until it is interrupted. Throws `UsageError` and `IOError`.
void preview(const Command& command);

}  // namespace tavrin::cli
