// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "tavrin/platform/foundation/net/url.h"

namespace tavrin {

/// The bytes that stand in a `data` URL itself, "data:[<mediatype>][;base64],<data>", as RFC 2397 has it and browsers
/// read it: blanks and line breaks between the digits of base64, and the "=" at its end, may be there or not. None for
/// another URL, one without a comma, and digits that are none.
[[nodiscard]] std::optional<std::string> dataOf(const URL& url);

}  // namespace tavrin
