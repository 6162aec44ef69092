// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// The headers that every answer carries: nothing is kept, nothing is guessed, no other page may use or frame it, and a
/// page loads nothing from elsewhere.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> headersOf(const HTTPResponse& response);

}  // namespace tavrin::cli
