// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "cli/arguments.h"
#include "cli/production.h"
#include "cli/reporter.h"

namespace tavrin::cli {

// The verbs that work on documents. Each returns the exit status: 0, or 1 when a document failed, which it has
// reported. Each throws `IOError` for what concerns no document alone, and `ClosedOutput`.

/// Draws every document, also when one fails, and writes the pictures.
[[nodiscard]] int run(const RenderArguments& arguments, const Reporter& reporter);
/// Draws the matrix into its folder, also when a picture fails, with an index and a contact sheet.
[[nodiscard]] int run(const MatrixArguments& arguments, const Reporter& reporter);
/// Draws the matrix with one line after another, also when one fails, with an index; nothing when a document fails.
[[nodiscard]] int run(const LinesArguments& arguments, const Reporter& reporter);
/// Draws what each line of standard input asks for, also when one fails, and answers each with one of standard output.
[[nodiscard]] int run(const StreamArguments& arguments);
/// Prints the view tree of one document or, as the verb says, the laid-out tree or the tap targets.
[[nodiscard]] int run(const PrintArguments& arguments, const Reporter& reporter);
/// Prints why views have their size and place.
[[nodiscard]] int run(const ExplainArguments& arguments, const Reporter& reporter);
/// Reports what is wrong with each document.
[[nodiscard]] int run(const CheckArguments& arguments, const Reporter& reporter);
/// Compares what is drawn with the snapshots that are kept; records new ones and says what differs.
[[nodiscard]] int run(const SnapshotArguments& arguments, const Reporter& reporter);
/// Downloads the pictures that the documents name into the folder for them.
[[nodiscard]] int run(const FetchArguments& arguments, const Reporter& reporter);

/// Prints a text for each document, or reports its failure.
[[nodiscard]] int printAll(const DocumentArguments& arguments, const Reporter& reporter,
                           const std::function<std::string(const Production&)>& textOf);

/// Makes a document, its model and its settings from a template, or lists the templates. Throws `UsageError` and, where
/// one of the files is there already, `IOError`.
void makeNew(const Command& command);

/// Serves the preview of a folder until it is interrupted. Throws `UsageError` and `IOError`.
void preview(const Command& command);

/// Serves pictures until it is interrupted, and returns the exit status. Throws `UsageError` and `IOError`.
[[nodiscard]] int serve(const Command& command);

/// The signed paths that a command asks for, one a line. Throws `UsageError` and `IOError`.
[[nodiscard]] std::string signedPaths(const Command& command);

}  // namespace tavrin::cli
