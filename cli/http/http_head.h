// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "cli/http/http_limits.h"

namespace tavrin::cli {

/// Why a request is refused before it is understood.
struct HTTPFault {
    unsigned status = 0;
    std::string message;
};

/// Where the head of a request ends, in what has come of it so far.
struct HeadEnd {
    std::size_t searched = 0;  ///< how much has been looked at; where to go on when more has come
    bool isWhole = false;      ///< whether it ends there
    bool isBroken = false;     ///< whether a line ends otherwise than with CR and LF
};
[[nodiscard]] HeadEnd findHeadEnd(std::string_view bytes, std::size_t searched);

/// What is wrong with a whole head, up to its empty line; none for a good one.
///
/// Stricter than it must be: what two servers might read in two ways, and so take for one request or for two, is
/// refused. A line folded onto the next, a blank before a colon, two lengths, a length of a body that is chunked,
/// another coding than chunked, no Host or two of them.
[[nodiscard]] std::optional<HTTPFault> headFault(std::string_view head, const HTTPLimits& limits);

/// What is wrong with a head that is too long to have ended by now.
[[nodiscard]] HTTPFault tooLongFault(std::string_view begun, const HTTPLimits& limits);

}  // namespace tavrin::cli
