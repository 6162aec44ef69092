// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// Why a request must not be answered, or none: it then loses the secret that its path begins with.
///
/// Every user of this machine and every page in its browsers can reach the port. Without the secret they learn that a
/// server answers there, and nothing else. The header `Host` must name this server, or else another name was made to
/// lead here (DNS rebinding). Only the preview's own page may use the interface: another page's requests carry its
/// `Origin` or `Sec-Fetch-Site`. What is posted must be declared as JSON, which no plain form can do.
[[nodiscard]] std::optional<HTTPResponse> refusal(HTTPRequest& request, std::uint16_t port, std::string_view secret);

}  // namespace tavrin::cli
