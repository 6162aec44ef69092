// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// The head of an answer, up to its empty line; `goesOn` where the connection stays open for another request.
[[nodiscard]] std::string answerHead(const HTTPResponse& response, std::size_t bodyBytes, bool goesOn);
/// The same for one that never ends.
[[nodiscard]] std::string eventStreamHead(const HTTPResponse& response);

}  // namespace tavrin::cli
