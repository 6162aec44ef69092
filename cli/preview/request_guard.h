// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "cli/preview/http_message.h"

namespace tavrin::cli {

/// Why a request must not be answered, or none.
///
/// Every program on this machine and every page in its browsers can reach the port. The header `Host` must name this
/// server, or else another name was made to lead here (DNS rebinding). Only the preview's own page may use the
/// interface: another page's requests carry its `Origin` or `Sec-Fetch-Site`. What is posted must be declared as JSON,
/// which no plain form can do.
[[nodiscard]] std::optional<HTTPResponse> refusal(const HTTPRequest& request, std::uint16_t port);

}  // namespace tavrin::cli
