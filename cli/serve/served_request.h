// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

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

/// Whose picture an address names, and what it says of it.
struct WidgetAddress {
    std::string name;
    ServedRequest request;  ///< without the document
};

/// Reads the body of a request that sends a document: `document`, `model` and `options`. `served` is what holds where
/// it says nothing, and bounds what it may say. Throws `RequestFault` and `OptionError` for what is not the form asked
/// for.
[[nodiscard]] ServedRequest readPosted(std::string_view body, const DrawingOptions& served);

/// Reads the address of a picture, `/v1/widgets/NAME.EXT` and its query; as `readPosted`.
[[nodiscard]] WidgetAddress readWidgetAddress(std::string_view path, std::string_view query,
                                              const DrawingOptions& served);

}  // namespace tavrin::cli
