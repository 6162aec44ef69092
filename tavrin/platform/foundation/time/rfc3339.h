// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "tavrin/platform/foundation/time/date.h"

namespace tavrin {

/// A moment as RFC 3339 writes it, in UTC: "2026-11-21T06:30:00Z". A fraction of a second is told in milliseconds,
/// rounded down. None outside of the years 0000 to 9999. `Date::parseRFC3339` reads such texts.
[[nodiscard]] std::optional<std::string> rfc3339Text(Date date);

}  // namespace tavrin
