// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/json/json_place.h"
#include "tavrin/platform/foundation/coding_path.h"
#include "tavrin/platform/foundation/placed_error.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin {

/// What went wrong, in plain data that every door can hand on.
struct ErrorDescription {
    /// "TavrinError", "ModelContextError", "DecodingError" or "ConversionError".
    std::string type;
    std::string message;
    /// Empty where the type has none.
    std::string kind = {};
    /// The way to the value at fault, where one is known.
    std::optional<CodingPath> codingPath = std::nullopt;
    /// The key that an object lacks.
    std::optional<std::string> key = std::nullopt;
    /// Which text it is about, where it is about one.
    std::optional<TextRole> role = std::nullopt;
    /// Where in that text.
    std::optional<TextPlace> place = std::nullopt;
};

/// What an error says by itself.
[[nodiscard]] ErrorDescription describeError(const std::exception_ptr& error);
/// The same with its place in the text that it is about.
[[nodiscard]] ErrorDescription describeError(const std::exception_ptr& error, std::string_view document,
                                             std::optional<std::string_view> model);

/// Writes `type`, `kind`, `domain` and `code`, the way under `pathKey`, `key` and `message`: those that there are.
void writeMembers(const ErrorDescription& error, std::string_view pathKey, JSONWriter& writer);
/// Writes these, the way called `path`, and where known `role` ("document" or "model"), `line` and `column`.
void writeMembers(const ErrorDescription& error, JSONWriter& writer);
/// An object of these on one line.
[[nodiscard]] std::string toJSON(const ErrorDescription& error);

}  // namespace tavrin
