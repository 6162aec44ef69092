// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/diagnostics/diagnostic.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/ui/color.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin {

/// What a document is looked at for.
struct DiagnoseOptions {
    /// The rooms that it is drawn in, each in every appearance. Without any it is not laid out.
    std::vector<WidgetRoom> rooms = {WidgetRoom{}};
    std::vector<Appearance> appearances = {Appearance::light, Appearance::dark};
    /// Pixels for each point.
    double scale = 3;
    /// What lies behind the widget; absent: the platform's own.
    std::optional<Color> background = std::nullopt;
    /// The moment that is drawn; absent: now.
    std::optional<Date> date = std::nullopt;
    /// The device's time zone; absent: the process's.
    std::optional<TimeZone> timeZone = std::nullopt;
    /// As in `Context`.
    std::optional<URL> imageCacheDir = std::nullopt;
    std::optional<Size> maxImageSize = std::nullopt;
    FetchPolicy fetchPolicy = FetchPolicy::all;
    std::size_t maximumNodes = 1'000'000;
    std::size_t maximumNesting = 512;
    /// How many diagnostics are made; what is found beyond is left out, and a note says so.
    std::size_t maximumDiagnostics = 1000;
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
