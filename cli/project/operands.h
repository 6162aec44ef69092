// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace tavrin::cli {

/// A document that a command line names, or that lies in a folder it names.
struct Operand {
    std::string path;  ///< "-" is standard input
    /// The path that its pictures have their names from: its own or, for a `document.json` that was found in a folder,
    /// that of the folder: "examples/agenda.json".
    std::string namedAs;
};

/// The documents of a command line: of each folder those in it and below, and of files those that are no models of
/// others. Throws `UsageError` where nothing is left, and `IOError` for a folder that cannot be read or has no
/// document.
[[nodiscard]] std::vector<Operand> expandedOperands(const std::vector<std::string>& words);

}  // namespace tavrin::cli
