// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tavrin/doors/option_reader.h"

namespace tavrin::cli {

/// What one line of a stream asks for.
struct StreamRequest {
    /// The document's text; of a JSON value, as it is written in the line. Absent where the document has a name.
    std::optional<std::string> document = std::nullopt;
    /// The path of the document's file.
    std::string name = {};
    std::optional<std::string> model = std::nullopt;
    /// The picture's file; without it the answer has the picture.
    std::optional<std::string> output = std::nullopt;
    DrawingOptions options = {};
};

/// Reads a line; `usual` is what holds where it says nothing, `usualFormat` where it and its output say none. Throws
/// `DecodingError` for what is not JSON, `UsageError` and `OptionError` for what asks for nothing that can be done.
[[nodiscard]] StreamRequest readStreamRequest(std::string_view line, const DrawingOptions& usual,
                                              std::optional<PictureFormat> usualFormat);

}  // namespace tavrin::cli
