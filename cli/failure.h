// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "cli/excerpt.h"
#include "cli/input.h"
#include "tavrin/diagnostics/diagnostic.h"
#include "tavrin/doors/error_description.h"

namespace tavrin::cli {

/// A snapshot that a difference is seen in.
struct SeenDifference {
    std::string snapshot;
    std::string how;  ///< its picture differs, in words
};

/// What went wrong, in the terms of the program's error objects; their types are those of `ErrorDescription` and
/// "UsageError", "IOError", "SettingsError", "SnapshotDifference" and "Diagnostic".
struct Failure : ErrorDescription {
    /// The text it is about; empty where it is about none.
    std::string file = {};
    /// The line at its place.
    std::optional<Excerpt> excerpt = std::nullopt;
    /// Of a difference: where it is seen.
    std::vector<SeenDifference> seenIn = {};
};

/// An error that is about no text: of the command line, of a file, of the program itself.
[[nodiscard]] Failure describe(const std::exception_ptr& error);

/// An error of loading or drawing a document, with its place in the text it is about. `model` may be null.
[[nodiscard]] Failure describe(const std::exception_ptr& error, const Source& document, const Source* model);

/// The text that a diagnostic is about. `model` may be null.
[[nodiscard]] inline const Source& sourceOf(const Diagnostic& found, const Source& document, const Source* model) {
    return found.role == TextRole::model && model ? *model : document;
}

/// A diagnostic about a text; its code is the kind.
[[nodiscard]] Failure describe(const Diagnostic& diagnostic, const Source& source);

}  // namespace tavrin::cli
