// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/serve/settings.h"
#include "cli/serve/widget_folder.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::cli {

/// What a request asks to be drawn or checked.
struct ServedRequest {
    std::string document = {};  ///< its text
    std::string digest = {};    ///< of that text
    std::optional<std::string> model = std::nullopt;
    DrawingOptions options = {};
    /// What was said of options, in a form of its own: requests that say the same ask for the same.
    std::string said = {};
};

/// Whose picture an address names, and in which format.
struct WidgetAddress {
    std::string name;
    PictureFormat format = PictureFormat::png;
};

/// Reads the body of a request that sends a document: `document`, `model` and `options`. `served` is what holds where
/// it says nothing, and bounds what it may say. Throws `RequestFault` and `OptionError` for what is not the form asked
/// for.
[[nodiscard]] ServedRequest readPosted(std::string_view body, const DrawingOptions& served);

/// Reads the path of a picture, `/v1/widgets/NAME.EXT`. Throws `RequestFault`.
[[nodiscard]] WidgetAddress readWidgetAddress(std::string_view path);

/// Reads what the query of an address says of a widget, before which goes what the server's settings say, and behind
/// which what lies beside the widget does. Without a model where the query has none; otherwise as `readPosted`.
[[nodiscard]] ServedRequest readWidgetQuery(std::string_view query, PictureFormat format, const FolderWidget& widget,
                                            const ServeSettings& serve);

}  // namespace tavrin::cli
