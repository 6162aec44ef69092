// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/diagnostics/diagnostic.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin {

/// What a document is looked at for: several rooms and appearances instead of the one that `WidgetOptions` name. A
/// widget without a background is looked at on the platform's own, and with square corners; `trace` counts for nothing.
struct DiagnoseOptions : WidgetOptions {
    /// The rooms that it is drawn in, each in every appearance. Without any it is not laid out.
    std::vector<WidgetRoom> rooms = {WidgetRoom{}};
    std::vector<Appearance> appearances = {Appearance::light, Appearance::dark};
    /// How many diagnostics are made; what is found beyond is left out, and a note says so.
    std::size_t maximumDiagnostics = 1000;
    /// Whether a picture that cannot be had is an error, also where nothing may be fetched for it.
    bool failsOnMissingPictures = false;
};

/// Everything that is wrong or doubtful in a document, in the order of the text: what makes `loadView` or a drawing
/// fail, and what is legal but surely meant otherwise. `docs/diagnostics.md` explains each kind.
///
/// Throws nothing for a bad document, also where an expression would violate a precondition. Web images are loaded as
/// `ImageRenderer` does. Holds no state: several threads may diagnose at once.
///
///     for (const tavrin::Diagnostic& found : tavrin::diagnose(document, model))
///         std::cerr << found.range->begin.line << ": " << found.message << "\n";
[[nodiscard]] std::vector<Diagnostic> diagnose(std::string_view document,
                                               std::optional<std::string_view> model = std::nullopt,
                                               const DiagnoseOptions& options = {});

/// Diagnostics as a compact JSON array of objects with `severity`, `code`, `message`, `role` ("document" or "model"),
/// `path` and, where the place is known, `range` with `line`, `column`, `endLine`, `endColumn`, `offset` and
/// `endOffset`; `fix`, a list of edits with the same members and `text`, where there is one.
[[nodiscard]] std::string toJSON(const std::vector<Diagnostic>& diagnostics);

}  // namespace tavrin
