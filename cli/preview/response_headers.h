// SPDX-License-Identifier: MIT
#pragma once

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// An answer with the headers that every one of the preview carries: nothing is kept, nothing is guessed, no other page
/// may use or frame it, and a page loads nothing from elsewhere.
[[nodiscard]] HTTPResponse withHeaders(HTTPResponse response);

}  // namespace tavrin::cli
