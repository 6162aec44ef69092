#pragma once

#include "cli/preview/drawing.h"
#include "cli/preview/http_message.h"
#include "cli/preview/request_fields.h"

namespace tavrin::cli {

/// What a posted drawing says: "document", "model", "width", "height" and "scale", "appearance", "date" in seconds
/// since 1970, "timeZone", "rounded", "layout". Throws `RequestError`.
[[nodiscard]] Drawing drawingOf(const RequestFields& fields);

/// A failure as the program writes it, `{"error": …}`; or, one behind the other, a line of JSON
/// `{"milliseconds": …, "notes": […], "layoutBytes": …}`, the layout's bytes and the picture's.
[[nodiscard]] HTTPResponse drawnMessage(const Drawn& drawn);

}  // namespace tavrin::cli
