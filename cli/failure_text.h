// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "cli/failure.h"

namespace tavrin::cli {

/// What a failure is called, and what kind of thing it is.
struct Label {
    std::string_view word = "error";
    std::string_view color = "\x1b[1;31m";
    std::string_view code = {};  ///< stands behind the message, in brackets
};

[[nodiscard]] Label labelOf(const Diagnostic& diagnostic);

/// A failure for people, as compilers write it, with the line and the coding path at fault. Ends with a line end.
[[nodiscard]] std::string failureText(const Failure& failure, bool colored, const Label& label = {});

/// The message behind its place, "w.widget.toml:2:1: settings have no 'familys'", where that is known.
[[nodiscard]] std::string placedMessage(const Failure& failure);

/// A failure for programs: one line of JSON. `withFile` names the document of every failure, not only where a place in
/// it is known or what it is about is a file.
[[nodiscard]] std::string toJSONLine(const Failure& failure, bool withFile);

}  // namespace tavrin::cli
