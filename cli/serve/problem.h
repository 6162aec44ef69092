// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "cli/http/http_message.h"
#include "tavrin/doors/error_description.h"

namespace tavrin::cli {

/// A request that cannot be followed as it is.
struct RequestFault : std::runtime_error {
    RequestFault(unsigned httpStatus, const std::string& message) : std::runtime_error(message), status(httpStatus) {}
    unsigned status;
};

/// An `application/problem+json` with the members of an error, and `status`. One that a client may mend by waiting says
/// how long.
[[nodiscard]] HTTPResponse problem(unsigned status, const ErrorDescription& error);
/// What is wrong with the request itself, or with the server.
[[nodiscard]] HTTPResponse problem(unsigned status, std::string_view message);

}  // namespace tavrin::cli
