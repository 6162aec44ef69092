// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/doors/option.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::cli {

/// Whether a request may have an option. Folders are those of the server's machine, and so the server's alone to say;
/// answers have no place for hashes.
[[nodiscard]] bool isForRequests(OptionName name);

/// Throws `OptionError` for an option that is not for requests.
void refuseServersOwn(OptionName name);

/// What a request asks for, kept within what the server allows: of each bound of the budget the smaller counts, so that
/// nobody can ask for more. Throws `OptionError` for a fetch policy that allows more than the server's.
[[nodiscard]] DrawingOptions within(const DrawingOptions& served, DrawingOptions asked);

}  // namespace tavrin::cli
