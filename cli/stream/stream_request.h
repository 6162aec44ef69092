// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/arguments.h"
#include "cli/stream/kept_pairings.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::cli {

/// What one line of a stream asks for.
struct StreamRequest {
    /// The document's text; of a JSON value, as it is written in the line. Absent where the document has a name.
    std::optional<std::string> document = std::nullopt;
    /// The path of the document's file.
    std::string name = {};
    /// The model's text; absent where the line has none.
    std::optional<std::string> model = std::nullopt;
    /// The file of the one that lies beside a named document, where the line has none.
    std::optional<std::string> modelFile = std::nullopt;
    /// The picture's file; without it the answer has the picture.
    std::optional<std::string> output = std::nullopt;
    DrawingOptions options = {};
};

/// Reads a line. Of a document that has a name what lies beside it holds where neither the line nor the command line
/// says anything, and then the arguments do. Throws `DecodingError` for what is not JSON, `UsageError` and
/// `OptionError` for what asks for nothing that can be done, and as `KeptPairings::find` does.
[[nodiscard]] StreamRequest readStreamRequest(std::string_view line, const StreamArguments& arguments,
                                              KeptPairings& pairings);

}  // namespace tavrin::cli
