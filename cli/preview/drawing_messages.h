// SPDX-License-Identifier: MIT
#pragma once

#include "cli/http/http_message.h"
#include "cli/preview/drawing.h"
#include "cli/preview/request_fields.h"

namespace tavrin::cli {

/// What a posted drawing says: "document", "model", "family", "width", "height" and "scale", "appearance", "date" in
/// seconds since 1970, "timeZone", "rounded". Throws `RequestError`.
[[nodiscard]] Drawing drawingOf(const RequestFields& fields);

/// A failure as the program writes it, `{"error": …}`; or, one behind the other, a line of JSON
/// `{"milliseconds": …, "notes": […]}` and the picture's bytes.
[[nodiscard]] HTTPResponse drawnMessage(const Drawn& drawn);

/// A failure, or `{"layout": …, "explanation": …}`.
[[nodiscard]] HTTPResponse explainedMessage(Explained explained);

}  // namespace tavrin::cli
